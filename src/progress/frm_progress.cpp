#include "progress/frm_progress.h"

#include <algorithm>

namespace genutil {
namespace {

constexpr double designHeight = 1620;

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
    place(lblTitle, 150, 240);
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
    lblTitle.caption = title;
    lblProgress.left = margin;
    lblProgress.caption = countLabel;
    lblValue.caption = "12345";
    lblValue.left = lblProgress.left + lblProgress.width;
    width = lblTitle.width + margin + margin;
    // The count has all the room to the window's right margin.
    lblValue.width = std::max(0.0, width - margin - lblValue.left);
    pnlGauge.width = lblTitle.width;
    lblValue.caption = "";
    pnlGauge.left = lblProgress.left;
    lbl0.left = pnlGauge.left;
    lbl100.left = pnlGauge.left + pnlGauge.width - lbl100.width;

    const Screen screen = desktop().screen();
    left = (screen.width - width) / 2;
    top = (screen.height - height) / 2;
}

void frmProgress::Form_Setup() {
    handle("Form_Setup", [this] { ignoringErrors([this] { show(Modal == 1); }); });
}

} // namespace genutil
