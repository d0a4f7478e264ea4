#pragma once

#include "frame/dialog_form.h"
#include "hostif/controls.h"

namespace genutil {

// The gauge window: a title, a running count with its label, and a bar with its scale. Lengths are twips.
class frmProgress : public DialogForm {
public:
    // The space left and right of the title and of the bar.
    static constexpr double margin = 240;

    explicit frmProgress(Component& component);

    // The window's own spelling of `modal`.
    std::int16_t& Modal = modal;

    Label lblTitle;
    Label lblProgress;
    Label lblValue;
    FloodGauge pnlGauge;
    Label lbl0;
    Label lbl100;

    // Lays the window out around the title, which sets its width, and centres it on the screen. A title
    // without text gets a usable width, one that is wider than the screen is bounded by it.
    void layOut(const std::string& title, const std::string& countLabel);
    // Shows the window; an error on the way is left out.
    void Form_Setup();

private:
    double widestLine(const std::string& title);
    void makeRoomFor(const std::string& title);
};

} // namespace genutil
