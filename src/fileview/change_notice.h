#pragma once

#include "hostif/controls.h"
#include "hostif/desktop.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace genutil {

// The bar above the text that says that the file on disk is no longer the one that was read, and offers to
// read it again. It is hidden while that is not so.
class ChangeNotice {
public:
    ChangeNotice(Form& form, FileSystem& files);

    Panel pnlNotice;
    Label lblNotice;
    Button cmdReload, cmdIgnore;

    // The text shown is now that of this file in this state (nothing: of no file). `changed` is called when
    // the file may have left it.
    void follow(const std::string& path, std::optional<FileStamp> state, std::function<void()> changed);
    void forget();
    // Looks at the file and shows or hides the bar.
    void look();
    // The present state counts as known.
    void ignore();
    // Whether another program has written to the file since it was read or saved here. A file that is gone
    // has nothing left to lose.
    bool isOverwriteOfOthers(const std::string& path) const;

private:
    Form& form_;
    FileSystem& files_;
    std::string path_;
    std::optional<FileStamp> own_;   // as it was read or saved here
    std::optional<FileStamp> known_; // as the user knows it
    std::unique_ptr<FileWatch> watch_;
};

} // namespace genutil
