#include "fileview/frm_printing.h"

namespace genutil {
namespace {

constexpr WindowChrome windowChrome{.width = 120, .height = 350};
constexpr double designWidth = 5400;
constexpr double designHeight = 2090;
constexpr double margin = 240;

void place(Control& control, double top, double width, double height) {
    control.left = margin;
    control.top = top;
    control.width = width;
    control.height = height;
}

} // namespace

frmPrinting::frmPrinting(Component& owner, const std::string& file)
    : DialogForm(owner, "frmPrinting", "Printing", "Printing", windowChrome), lblFile(*this, "lblFile", file),
      lblPage(*this, "lblPage", ""), gauPages(*this, "gauPages"), cmdCancel(*this, "cmdCancel", "Cancel") {
    width = designWidth;
    height = designHeight;
    const double room = designWidth - windowChrome.width - 2 * margin;
    place(lblFile, 180, room, 240);
    place(lblPage, 480, room, 240);
    place(gauPages, 780, room, 330);
    place(cmdCancel, 1260, 1200, 360);
    cmdCancel.left = margin + (room - cmdCancel.width) / 2;
    cmdCancel.isCancel = true;
    cmdCancel.tabIndex = 0;
    lblFile.toolTip = file;
    const Screen screen = desktop().screen();
    left = (screen.width - width) / 2;
    top = (screen.height - height) / 2;
    on(cmdCancel.click, "cmdCancel_Click", [this] { cancelled_ = true; });
    on(queryUnload, "Form_QueryUnload", [this](bool& refuse, UnloadReason) {
        // The run notices, and takes the form away.
        cancelled_ = true;
        refuse = !ended_;
    });
}

bool frmPrinting::goesOn(std::size_t done, std::size_t total) {
    const auto now = std::chrono::steady_clock::now();
    if (now < nextTurn_ || now - since_ < patience)
        return !cancelled_;
    nextTurn_ = now + turn;
    lblPage.caption = "Page " + std::to_string(done + 1) + " of " + std::to_string(total);
    gauPages.floodPercent = std::int16_t(done * 100 / total);
    if (!isShown())
        showEarly();
    desktop().doEvents();
    return !cancelled_;
}

void frmPrinting::end() {
    ended_ = true;
    if (isLoaded())
        unload();
}

} // namespace genutil
