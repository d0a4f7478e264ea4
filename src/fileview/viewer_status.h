#pragma once

#include "hostif/controls.h"
#include "hostif/report_text.h"

#include <cstdint>
#include <optional>
#include <string>

namespace genutil {

// The bar along the bottom of the viewer: where the caret is, what is selected, the encoding, the size.
class ViewerStatus {
public:
    ViewerStatus(Form& form, ReportText& text);

    Panel pnlStatus;
    Label lblPosition, lblSelection;
    ComboBox cboEncoding; // offers the encodings that the text can be read in
    Label lblSize;

    // Bytes of the file that the text is that of; nothing once the text is another one.
    std::optional<std::uint64_t> fileSize;

    void showSelection();
    void showText();
    // The encoding that the user has picked from the list, if it is another one than the text's.
    std::optional<std::string> chosenEncoding() const;

private:
    ReportText& text_;
};

} // namespace genutil
