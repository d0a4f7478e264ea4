#include "progress/frm_progress.h"

#include <algorithm>
#include <initializer_list>
#include <sstream>

namespace genutil {
namespace {

constexpr double designHeight = 1620;
constexpr double titleLine = 240;
constexpr std::ptrdiff_t mostTitleLines = 5;
constexpr double leastTitleWidth = 2400;
constexpr double screenMargin = 300; // of the screen that the widest window leaves free

// A step whose failure must not disturb the host's computation.
template<class Step>
void ignoringErrors(Step&& step) noexcept {
    try {
        step();
    } catch (...) {
        // The window is only an ornament of the computation: that goes on without it.
    }
}

void place(Control& control, double top, double height) {
    control.top = top;
    control.height = height;
}

} // namespace

frmProgress::frmProgress(Component& owner)
    : DialogForm(owner, "frmProgress", "Progress", ""),
      lblTitle(*this, "lblTitle", "What", Label::Sizing::Auto),
      lblProgress(*this, "lblProgress", "Label1", Label::Sizing::Auto), lblValue(*this, "lblValue", "12345"),
      pnlGauge(*this, "pnlGauge"), lbl0(*this, "lbl0", "0", Label::Sizing::Auto),
      lbl100(*this, "lbl100", "100", Label::Sizing::Auto) {
    height = designHeight;
    place(lblTitle, 150, titleLine);
    place(lblProgress, 480, 240);
    place(lblValue, 480, 240);
    place(pnlGauge, 780, 330);
    place(lbl0, 1170, 240);
    place(lbl100, 1170, 240);
    lblTitle.font = Font{.name = "MS Sans Serif", .size = 9.75, .bold = true};
    lblTitle.left = margin;
    unloaded.connect([this] {
        ignoringErrors([&] {
            hide();
            desktop().doEvents();
        });
    });
}

void frmProgress::layOut(const std::string& title, const std::string& countLabel) {
    const Screen screen = desktop().screen();
    lblTitle.caption = title;
    lblProgress.left = margin;
    lblProgress.caption = countLabel;
    lblValue.caption = "12345";
    lblValue.left = lblProgress.left + lblProgress.width;
    // The title's width is the window's: a short one leaves room for the count, a long one stays on the
    // screen.
    const double leastWidth =
        std::max(leastTitleWidth, lblProgress.width + desktop().textWidth(lblValue.font, "1234567"));
    const double mostWidth = screen.width - margin - margin - screenMargin;
    lblTitle.width = std::min(std::max(widestLine(title), leastWidth), mostWidth);
    makeRoomFor(title);
    width = lblTitle.width + margin + margin;
    // The count has all the room to the window's right margin.
    lblValue.width = std::max(0.0, width - margin - lblValue.left);
    pnlGauge.width = lblTitle.width;
    lblValue.caption = "";
    pnlGauge.left = lblProgress.left;
    lbl0.left = pnlGauge.left;
    lbl100.left = pnlGauge.left + pnlGauge.width - lbl100.width;

    left = (screen.width - width) / 2;
    top = (screen.height - height) / 2;
}

double frmProgress::widestLine(const std::string& title) {
    double widest = 0;
    std::istringstream lines(title);
    for (std::string line; std::getline(lines, line);)
        widest = std::max(widest, desktop().textWidth(lblTitle.font, line));
    return widest;
}

// The lines of the title stand below each other, and all else below them.
void frmProgress::makeRoomFor(const std::string& title) {
    const auto lines = std::min<std::ptrdiff_t>(1 + std::ranges::count(title, '\n'), mostTitleLines);
    const double more = static_cast<double>(lines - 1) * titleLine;
    lblTitle.height = titleLine * static_cast<double>(lines);
    for (Control* below : std::initializer_list<Control*>{&lblProgress, &lblValue, &pnlGauge, &lbl0, &lbl100})
        below->top = below->top + more;
    height = height + more;
}

void frmProgress::Form_Setup() {
    handle("Form_Setup", [this] { ignoringErrors([this] { show(Modal == 1); }); });
}

} // namespace genutil
