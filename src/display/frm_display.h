#pragma once

#include "display/display_boxes.h"
#include "frame/dialog_form.h"

#include <array>
#include <cstdint>
#include <deque>

namespace genutil {

// The display settings: what the host's plot shows. The loader fills the boxes from the host's View menu and
// writes them back.
class frmDisplay : public DialogForm {
public:
    explicit frmDisplay(Component& component);

    RecordPtr prog; // a copy, for help; set by the loader
    // The choices shown are to be applied.
    bool OKPressed = false;

    Panel fraPoints, FraLines, fraGeneral;
    std::deque<CheckBox> boxes; // in the order of displayBoxes()
    CheckBox &chkGeoid, &chkPlotGeog, &chkScaleBar, &chkScaleDefault, &chkZoneBdys;

    // The legend: a sample beside each box of a line, the arrow beside the reference lines.
    Panel Picture1;
    std::deque<LineSample> samples;
    std::deque<LineSample> arrow; // shaft, strokes of the head
    Label lblKnownPoint, lblBearing;

    Panel pnlButtons;
    Button cmdOK, cmdCancel;
    Panel pnlHelp;

    CheckBox& chkPoints(std::size_t index) { return boxes.at(index); }
    Panel& frameOf(DisplayFrame frame);

    void Form_Setup(const std::string& helpSource);
    // Forgets which labels are shown.
    void SetupPoints();
    // A box of `chkPoints` has been ticked or cleared: keeps two labels at most, and "Points only" ticked
    // exactly while there is none.
    void PointChecks(std::int16_t index, bool value);
    // A plot by latitude and longitude has no scale bar, and only a scale bar has a position.
    void allowScaleBar();

private:
    CheckBox& named(const char* control);
    void assignTopics();
    void connectControls();
    void connectBoxes();
    void showLabel(std::int16_t index);
    void forgetLabel(std::int16_t index);

    static constexpr std::int16_t emptySlot = -1;
    std::array<std::int16_t, 2> labelSlots_{emptySlot, emptySlot}; // indices of ticked labels, oldest first
    bool pointChecksBusy_ = false; // boxes are being changed by PointChecks itself
};

} // namespace genutil
