#include "lsoptions/frm_ls_options.h"

#include "lsoptions/ls_numbers.h"
#include "text/blanks.h"

#include <cmath>

// What the user does with the options, and what follows from it.
namespace genutil {
namespace {

constexpr int scaleErrorEllipses = 7, autoRescale = 26, unitWeights = 3;

std::string shownTruth(bool isOn) {
    return isOn ? "on" : "off";
}

} // namespace

void frmLS_Options::connectControls() {
    openHelpOnF1([this] { return programFolder; });
    for (const LSOption& option : lsOptions()) {
        Control* const control = controls_[std::size_t(option.number) - 1];
        if (!control)
            continue;
        const bool isList = option.kind == LSControl::TextList || option.kind == LSControl::CodeList;
        if (!isList) // its label reports in its place
            followMouse({control});
        if (option.kind == LSControl::Box)
            connectBox(option);
        else if (option.kind == LSControl::Check)
            on(checkOf(option.number).click, control->name() + "_Click", [this, &option] {
                if (option.number == unitWeights)
                    clickUnitWeights();
                noteChoice(option.number);
                if (option.number == scaleErrorEllipses)
                    clickScaleErrorEllipses();
            });
        else if (isList)
            on(listOf(option.number).click, control->name() + "_Click",
                [this, &option] { noteChoice(option.number); });
    }
    for (Label& label : dummyLabels)
        followMouse({&label});
    followMouse({&cmdOK, &cmdCancel, &cmdDefaults});
}

void frmLS_Options::connectBox(const LSOption& option) {
    TextBox& box = boxOf(option.number);
    on(box.gotFocus, box.name() + "_GotFocus", [this, &box] { enterBox(box); });
    on(box.lostFocus, box.name() + "_LostFocus", [this, &option] { leaveBox(option); });
}

void frmLS_Options::connectButtons() {
    on(cmdOK.click, "cmdOK_Click", [this] {
        if (dataChanged_)
            saveByMode();
        unload();
    });
    on(cmdCancel.click, "cmdCancel_Click", [this] { cancel(); });
    on(cmdDefaults.click, "cmdDefaults_Click", [this] { GetDefaultData(LSOptPrefDefaults); });
    cmdCancel.needsNoValidEntry = true;
    cmdDefaults.needsNoValidEntry = true;
    // At the close box the window closes whatever the answer; the application's end waits for a Yes.
    on(queryUnload, "Form_QueryUnload", [this](bool& refused, UnloadReason reason) {
        if (reason != UnloadReason::Code)
            cancel();
        refused = reason == UnloadReason::Ending && dataChanged_;
    });
    on(unloaded, "Form_Unload", [this] { component().desktop().setPointer(Pointer::Default); });
}

void frmLS_Options::enterBox(TextBox& box) {
    entryText_ = box.text;
    component().genProcs().SelectAllText(box);
}

std::string frmLS_Options::formatted(const LSOption& option, double value) {
    DisplayFormats& formats = component().dispFormats();
    const auto format = [&] {
        switch (option.format) {
        case LSFormat::Seconds:
            return formats.SecondsFormat();
        case LSFormat::PPM:
            return formats.PPMFormat();
        case LSFormat::ConstraintFactor:
            return formats.ConstraintFactorFormat();
        case LSFormat::Convergence:
            return formats.ConvergenceFormat();
        case LSFormat::Tolerance:
            return formats.ToleranceFormat();
        default:
            return formats.DistanceFormat();
        }
    };
    return component().strUtil().FormatValue(Value(value), format(), "");
}

void frmLS_Options::leaveBox(const LSOption& option) {
    TextBox& box = boxOf(option.number);
    const std::string typed = box.text;
    const bool isLimit = option.check == LSCheck::LimitNotZero;
    if (lsIsBeyondDoubles(box.text.get()))
        return refuse(box,
            "The option " + std::string(option.name()) + " cannot hold the number '" + box.text.get() + "'");
    // An emptied limit stays empty, and is refused.
    if (!isLimit || !text::isBlank(box.text.get())) {
        const double value = lsValueOf(box.text.get());
        box.text = formatted(option, isLimit ? std::fabs(value) : value);
    }
    const bool isZero = lsValueOf(box.text.get()) == 0;
    if (option.check == LSCheck::NotBothZero) {
        if (isZero && lsValueOf(boxOf(option.pairedWith).text.get()) == 0)
            return refuse(box, "Constant and PPM cannot be both zero!");
    } else if (option.check != LSCheck::Nothing && isZero) {
        return refuse(box, "Cannot be zero!");
    }
    accept(box);
    if (option.check == LSCheck::NotBothZero)
        accept(boxOf(option.pairedWith));
    if (setupDone_ && typed != entryText_)
        sayUnderstood(option, typed);
    noteChange(option);
    showMark(option);
}

// A box that was refused gets its usual look back.
void frmLS_Options::accept(TextBox& box) {
    if (box.backColor == BackColor::Refused)
        box.backColor = box.locked || !box.enabled ? BackColor::Light3D : BackColor::Info;
}

void frmLS_Options::refuse(TextBox& box, const std::string& message) {
    box.backColor = BackColor::Refused;
    component().desktop().ask({.text = message, .icon = Icon::Information});
    if (setupDone_)
        box.setFocus();
}

void frmLS_Options::noteChange(const LSOption& option) {
    if (!setupDone_ || boxOf(option.number).text.get() == entryText_)
        return;
    dataChanged_ = true;
    forgetStored(option);
}

std::int32_t frmLS_Options::stateOf(int option) {
    return lsOption(option).kind == LSControl::Check ? std::int32_t(checkOf(option).ticked.get())
                                                     : listOf(option).listIndex.get();
}

void frmLS_Options::noteChoice(int option) {
    if (setupDone_ && stateOf(option) != initialState_[option])
        dataChanged_ = true;
    forgetStored(lsOption(option));
    showMark(lsOption(option));
}

std::string frmLS_Options::shownValue(const LSOption& option) {
    if (option.kind == LSControl::Box)
        return boxOf(option.number).text;
    if (option.kind == LSControl::Check)
        return shownTruth(checkOf(option.number).ticked);
    const auto item = listOf(option.number).selectedItem();
    return item ? item->text : std::string();
}

std::string frmLS_Options::shownDefault(const LSOption& option) {
    const Value usual = memberOf(*LSOptPrefDefaults, option);
    if (option.kind == LSControl::Box)
        return formatted(option, usual.toDouble());
    if (option.kind == LSControl::Check)
        return shownTruth(usual.toBool());
    const ComboBox& list = listOf(option.number);
    const auto position = SetComboIndex(usual, usual, list, option.kind == LSControl::CodeList);
    return position < 0 ? std::string() : list.items.get()[std::size_t(position)].text;
}

bool frmLS_Options::differsFromDefault(const LSOption& option) {
    if (!LSOptPrefDefaults || !setupDone_)
        return false;
    const std::string shown = shownValue(option);
    const std::string usual = shownDefault(option);
    return option.kind == LSControl::Box ? lsValueOf(shown) != lsValueOf(usual) : shown != usual;
}

void frmLS_Options::explain(const LSOption& option) {
    std::string tip = lsToolTip(option);
    if (LSOptPrefDefaults)
        tip += " Default: " + shownDefault(option) + ".";
    if (const auto stored = storedOtherwise_.find(option.number); stored != storedOtherwise_.end())
        tip += " Stored is " + stored->second + ", which OK replaces by " + shownValue(option) +
               " when anything has been changed.";
    controls_[std::size_t(option.number) - 1]->toolTip = tip;
}

void frmLS_Options::noteStored(const LSOption& option, const Value& stored) {
    storedOtherwise_.erase(option.number);
    if (setupDone_ || stored.isNull() || option.kind == LSControl::Check)
        return;
    const std::string text = stored.toText();
    const auto item = option.kind == LSControl::Box ? std::nullopt : listOf(option.number).selectedItem();
    const bool isShown = option.kind == LSControl::Box ? lsValueOf(text) == lsValueOf(shownValue(option))
                         : option.kind == LSControl::CodeList ? item && stored.toDouble() == item->code
                                                              : item && text == item->text;
    if (!isShown)
        storedOtherwise_[option.number] = text;
}

// The user has chosen another value.
void frmLS_Options::forgetStored(const LSOption& option) {
    if (setupDone_ && storedOtherwise_.erase(option.number) > 0)
        explain(option);
}

void frmLS_Options::sayUnderstood(const LSOption& option, const std::string& typed) {
    const std::string unit = option.unit;
    const bool isMore = setupDone_ && !text::isBlank(typed) && !lsIsNumber(typed);
    lblUnderstood.caption = isMore ? "'" + typed + "' was read as " + boxOf(option.number).text.get() +
                                         (unit.empty() || unit == "%" ? unit : " " + unit)
                                   : "";
    lblUnderstood.toolTip = lblUnderstood.caption.get();
}

void frmLS_Options::showMark(const LSOption& option) {
    controls_[std::size_t(option.number) - 1]->marked =
        differsFromDefault(option) || storedOtherwise_.contains(option.number);
}

void frmLS_Options::showMarks() {
    for (const LSOption& option : lsOptions()) {
        if (option.kind == LSControl::PointSave)
            continue;
        explain(option);
        showMark(option);
    }
}

void frmLS_Options::clickScaleErrorEllipses() {
    CheckBox& rescale = checkOf(autoRescale);
    rescale.enabled = checkOf(scaleErrorEllipses).ticked.get();
    if (!rescale.enabled)
        rescale.ticked = false;
}

// Boxes that are greyed out or hidden are left alone.
void frmLS_Options::clickUnitWeights() {
    const bool applied = checkOf(unitWeights).ticked;
    for (TextBox& box : boxes)
        if (box.enabled && box.tag.get().find(deviationTag) != std::string::npos) {
            box.locked = applied;
            box.backColor = applied ? BackColor::Light3D : BackColor::Info;
        }
}

void frmLS_Options::saveByMode() {
    switch (LSOptionsMode) {
    case lsmode::OptionSet:
        SaveDefaultData();
        break;
    case lsmode::Page:
        if (page() >= 0)
            SaveDataPage(page());
        break;
    case lsmode::Header:
        SaveHeaderData();
        break;
    case lsmode::HeaderAndSet:
        SaveHeaderData();
        SaveDefaultData();
        break;
    default:
        break;
    }
}

void frmLS_Options::cancel() {
    if (dataChanged_ && component().desktop().ask({.text = "Cancelling will abandon changes - Are you sure ?",
                            .icon = Icon::Question,
                            .buttons = Buttons::YesNo,
                            .defaultAnswer = Answer::No}) != Answer::Yes)
        return;
    dataChanged_ = false;
    unload();
}

} // namespace genutil
