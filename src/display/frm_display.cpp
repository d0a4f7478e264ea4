#include "display/frm_display.h"

#include <algorithm>

namespace genutil {
namespace {

constexpr HelpTopics helpTopics{8600, 8600, 8605, 19004, 19006};
constexpr int pointsTopic = 8601, linesTopic = 8602, generalTopic = 8603, legendTopic = 8604,
              scaleTopic = 8605;

constexpr std::int16_t pointsOnly = 0;

std::deque<CheckBox> makeBoxes(Form& form) {
    std::deque<CheckBox> made;
    for (const DisplayBox& box : displayBoxes())
        made.emplace_back(form, box.control, box.caption).toolTip = box.help;
    return made;
}

void addLine(std::deque<LineSample>& lines, Form& form, const LegendLine& line) {
    if (line.control)
        lines.emplace_back(form, line.control, line.color, line.style, line.width);
}

} // namespace

frmDisplay::frmDisplay(Component& owner)
    : DialogForm(owner, "frmDisplay", "Display", "Display Settings"),
      fraPoints(*this, "fraPoints", "Point display"), FraLines(*this, "FraLines", "Line display"),
      fraGeneral(*this, "fraGeneral", "General"), boxes(makeBoxes(*this)), chkGeoid(named("chkGeoid")),
      chkPlotGeog(named("chkPlotGeog")), chkScaleBar(named("chkScaleBar")),
      chkScaleDefault(named("chkScaleDefault")), chkZoneBdys(named("chkZoneBdys")),
      Picture1(*this, "Picture1"), lblKnownPoint(*this, "lblKnownPoint", "- Known/Prev. Point"),
      lblBearing(*this, "lblBearing", "- Bearing/Azimuth"), pnlButtons(*this, "pnlButtons"),
      cmdOK(*this, "cmdOK", "&OK"), cmdCancel(*this, "cmdCancel", "&Cancel"), pnlHelp(*this, "pnlHelp") {
    for (const DisplayBox& box : displayBoxes())
        addLine(samples, *this, box.legend);
    for (const LegendLine& line : referenceArrow())
        addLine(arrow, *this, line);
    int next = 0;
    for (const char* const control : focusBeforeButtons())
        named(control).tabIndex = next++;
    for (Button* const button : {&cmdOK, &cmdCancel})
        button->tabIndex = next++;
    for (const char* const control : focusAfterButtons())
        named(control).tabIndex = next++;
    assignTopics();
    connectControls();
    connectBoxes();
}

CheckBox& frmDisplay::named(const char* control) {
    const auto found = std::ranges::find(boxes, control, &CheckBox::name);
    if (found == boxes.end())
        throw Error(errors::OutOfRange, "The display settings have no box " + std::string(control));
    return *found;
}

Panel& frmDisplay::frameOf(DisplayFrame frame) {
    return frame == DisplayFrame::Points ? fraPoints : frame == DisplayFrame::Lines ? FraLines : fraGeneral;
}

void frmDisplay::assignTopics() {
    fraPoints.helpContextId = pointsTopic;
    FraLines.helpContextId = linesTopic;
    fraGeneral.helpContextId = generalTopic;
    Picture1.helpContextId = legendTopic;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        boxes[i].helpContextId = frameOf(displayBoxes()[i].frame).helpContextId;
    chkScaleBar.helpContextId = scaleTopic;
    chkScaleDefault.helpContextId = scaleTopic;
    cmdOK.helpContextId = helpTopics.firstShared;
    cmdCancel.helpContextId = helpTopics.lastShared;
}

void frmDisplay::connectControls() {
    openHelpOnF1([this] { return required(prog, "prog").get(program::ProgramFolder); });
    toggleOnSpace();
    askOnLeaving(cmdOK, cmdCancel, [] { return false; });
    moveOnEnter();
    followMouse({&fraGeneral, &FraLines, &fraPoints, &cmdOK, &cmdCancel});
    // What has a topic of its own within a frame.
    followMouse({&Picture1, &chkScaleBar, &chkScaleDefault});
    on(cmdOK.click, "cmdOK_Click", [this] {
        OKPressed = true;
        hide();
    });
    on(cmdCancel.click, "cmdCancel_Click", [this] {
        OKPressed = false;
        unload();
    });
    on(queryUnload, "Form_QueryUnload", [this](bool&, UnloadReason reason) {
        if (reason == UnloadReason::CloseBox)
            OKPressed = true;
    });
}

void frmDisplay::connectBoxes() {
    for (std::size_t i = 0; i < pointBoxCount; ++i)
        on(chkPoints(i).click, "chkPoints_Click",
            [this, i] { PointChecks(std::int16_t(i), chkPoints(i).ticked); });
    on(chkPlotGeog.click, "chkPlotGeog_Click", [this] { allowScaleBar(); });
    on(chkScaleBar.click, "chkScaleBar_Click", [this] {
        chkScaleDefault.enabled = chkScaleBar.ticked.get();
        chkScaleDefault.ticked = chkScaleBar.ticked.get();
    });
}

void frmDisplay::allowScaleBar() {
    chkScaleBar.enabled = !chkPlotGeog.ticked;
    chkScaleDefault.enabled = chkScaleBar.ticked.get();
    if (chkPlotGeog.ticked)
        chkScaleBar.ticked = false;
}

void frmDisplay::Form_Setup(const std::string& helpSource) {
    run("Form_Setup", [&] {
        setUpKeysAndHelp(helpTopics, helpSource);
        pointChecksBusy_ = false;
        OKPressed = false;
        showAsSetUp();
    });
}

void frmDisplay::SetupPoints() {
    run("SetupPoints", [&] { labelSlots_.fill(emptySlot); });
}

void frmDisplay::PointChecks(std::int16_t index, bool value) {
    run("PointChecks", [&] {
        if (index < 0 || std::size_t(index) >= pointBoxCount)
            throw Error(errors::OutOfRange, "There is no chkPoints(" + std::to_string(index) + ")");
        if (pointChecksBusy_)
            return;
        if (value)
            showLabel(index);
        else
            forgetLabel(index);
    });
}

void frmDisplay::showLabel(std::int16_t index) {
    auto& [oldest, latest] = labelSlots_;
    pointChecksBusy_ = true;
    if (index == pointsOnly) {
        for (std::size_t i = 1; i < pointBoxCount; ++i)
            chkPoints(i).ticked = false;
        oldest = pointsOnly;
        latest = emptySlot;
    } else if (oldest != index && latest != index) {
        if (oldest != emptySlot)
            chkPoints(std::size_t(oldest)).ticked = false;
        oldest = std::exchange(latest, index);
    }
    pointChecksBusy_ = false;
}

void frmDisplay::forgetLabel(std::int16_t index) {
    std::ranges::replace(labelSlots_, index, emptySlot);
    bool anyLabel = false;
    for (std::size_t i = 1; i < pointBoxCount; ++i)
        anyLabel = anyLabel || chkPoints(i).ticked;
    chkPoints(pointsOnly).ticked = !anyLabel;
}

} // namespace genutil
