#pragma once

#include "fileview/c_file_view_loader.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <string>

namespace genutil::fake {

// A file viewer over files in memory. The scripted desktop's fixed-pitch character is 100 twips wide; the
// window starts 9480 wide.
struct Viewer : ::testing::Test, World {
    cFileViewLoader loader{component};
    RecordPtr prog = programObject();

    std::string file(const std::string& name, const std::string& bytes) {
        files.put("/jobs/" + name, bytes);
        return "/jobs/" + name;
    }
    frmFileView& view(std::int16_t mode, const std::string& path, const std::string& editor = "") {
        loader.LoadFileViewForm(true, false, mode, path, prog, editor);
        return *loader.form();
    }
};

// The user's typing at the text's start.
inline void type(frmFileView& form, const std::string& text) {
    form.rtbViewText.userReplace({}, text);
}

inline std::string wholeText(const frmFileView& form) {
    const text::TextDocument& document = *form.rtbViewText.document();
    return document.text({{}, document.end()});
}

} // namespace genutil::fake
