#include "lsoptions/frm_ls_options.h"

#include "lsoptions/ls_numbers.h"

#include <algorithm>

namespace genutil {
namespace {

constexpr HelpTopics helpTopics{8300, 8301, 8330, 19004, 19006};

constexpr int defaultsTopic = 8313;

// The lists in the order in which their labels are handed to instant help.
constexpr std::array labelledLists{29, 28, 30, 15, 31, 32, 48};
// What the state at the end of loading is taken of.
constexpr std::array watched{7, 6, 4, 5, 3, 26, 27, 15, 48, 28, 32, 29, 30, 31};

template<class Controls>
auto& controlOf(Controls& all, const char* name) {
    const auto found = std::ranges::find_if(all, [&](const auto& each) { return each.name() == name; });
    if (found == all.end())
        throw Error(errors::OutOfRange, "The least-squares options have no control " + std::string(name));
    return *found;
}

// "cboMDE" becomes "lblDummyCboMDE".
std::string dummyLabelName(std::string_view list) {
    return "lblDummyC" + std::string(list.substr(1));
}

} // namespace

frmLS_Options::frmLS_Options(Component& owner)
    : DialogForm(owner, "frmLS_Options", "LS_Options", "Least-Squares Options"), cmdOK(*this, "cmdOK", "&OK"),
      cmdCancel(*this, "cmdCancel", "&Cancel"), cmdDefaults(*this, "cmdDefaults", "Set &Defaults"),
      pnlHelp(*this, "pnlHelp"), lblUnderstood(*this, "lblUnderstood", "") {
    makeControls();
    connectControls();
    connectButtons();
}

void frmLS_Options::makeControls() {
    for (const LSOption& option : lsOptions())
        switch (option.kind) {
        case LSControl::Box: {
            TextBox& box = boxes.emplace_back(*this, option.control, option.designText);
            box.tag = tagOf(option);
            box.backColor = BackColor::Info;
            box.enabled = std::string_view(option.designText) != hiddenText;
            break;
        }
        case LSControl::Check:
            checks.emplace_back(*this, option.control, std::string(lsCheckCaption(option.number)));
            break;
        case LSControl::TextList:
        case LSControl::CodeList:
            lists.emplace_back(*this, option.control).backColor = BackColor::Info;
            dummyLabels.emplace_back(*this, dummyLabelName(option.control), "").visible = false;
            break;
        case LSControl::PointSave:
            break;
        }
    for (const LSObservation& row : lsObservations())
        labels.emplace_back(*this, row.label, row.caption).tag = row.isSpatial ? "3Dobs" : "";
    for (const LSGroup& group : lsGroups())
        for (const LSCaption& each : group.options)
            labels.emplace_back(*this, each.label, each.caption);

    for (const LSOption& option : lsOptions())
        if (option.kind != LSControl::PointSave)
            controls_[std::size_t(option.number) - 1] = findControl(option.control);
    for (const LSFocus& each : lsFocusOrder()) {
        Control& control = *controls_[std::size_t(each.option) - 1];
        control.tabIndex = each.number;
        control.toolTip = lsToolTip(lsOption(each.option));
        control.helpContextId = lsHelpTopic(each.option);
    }
    for (std::size_t i = 0; i < lists.size(); ++i)
        dummyLabels[i].helpContextId = lists[i].helpContextId;
    cmdOK.helpContextId = helpTopics.firstShared;
    cmdCancel.helpContextId = helpTopics.lastShared;
    cmdDefaults.helpContextId = defaultsTopic;
    int next = lsFocusOrder().back().number;
    for (Button* button : {&cmdOK, &cmdCancel, &cmdDefaults})
        button->tabIndex = ++next;
}

std::string frmLS_Options::tagOf(const LSOption& option) const {
    switch (option.row) {
    case LSRow::Plane:
        return deviationTag;
    case LSRow::Spatial:
        return std::string(deviationTag) + "/" + spatialTag;
    default:
        return {};
    }
}

TextBox& frmLS_Options::boxOf(int option) {
    return controlOf(boxes, lsOption(option).control);
}
CheckBox& frmLS_Options::checkOf(int option) {
    return controlOf(checks, lsOption(option).control);
}
ComboBox& frmLS_Options::listOf(int option) {
    return controlOf(lists, lsOption(option).control);
}

// ---- set-up

void frmLS_Options::Form_Setup(const std::string& helpSource, const std::shared_ptr<Recordset>& table) {
    run("Form_Setup", [&] {
        setUpKeysAndHelp(helpTopics, helpSource);
        for (const int option : labelledLists) {
            ComboBox& list = listOf(option);
            IHelp()->AttachComboLabel(controlOf(dummyLabels, dummyLabelName(list.name()).c_str()), list);
        }
        SetupComboLists();
        setupDone_ = false;
        loadByMode(table);
        for (const int option : watched)
            initialState_[option] = stateOf(option);
        if (LSOptionsMode == lsmode::Page || LSOptionsMode == lsmode::Header)
            greySpatialRows();
        component().desktop().setPointer(Pointer::Default);
        setupDone_ = true;
        showMarks();
        show(modal == 1);
        table_.reset();
    });
}

void frmLS_Options::loadByMode(const std::shared_ptr<Recordset>& table) {
    switch (LSOptionsMode) {
    case lsmode::OptionSet:
        cmdDefaults.visible = false;
        GetDefaultData(LSOptPref);
        break;
    case lsmode::Page:
        table_ = table;
        if (page() >= 0)
            GetDataPage(page());
        break;
    case lsmode::Header:
    case lsmode::HeaderAndSet:
        table_ = table;
        GetTravHeaderData();
        break;
    default:
        break; // the controls keep their design texts and the lists their first choices
    }
}

void frmLS_Options::greySpatialRows() {
    const auto grey = [](auto& controls) {
        for (Control& control : controls)
            if (control.tag.get().find(spatialTag) != std::string::npos) {
                control.enabled = false;
                control.backColor = BackColor::Light3D;
            }
    };
    grey(boxes);
    grey(labels);
}

void frmLS_Options::SetupComboLists() {
    run("SetupComboLists", [&] {
        for (const LSList& list : lsLists()) {
            std::vector<ListItem> items;
            for (const LSChoice& choice : list.choices)
                items.push_back(
                    {choice.text ? std::string(choice.text) : Value(choice.number).toText(), choice.code});
            ComboBox& shown = listOf(list.option);
            shown.items = std::move(items);
            shown.listIndex = list.position;
        }
    });
}

std::int16_t frmLS_Options::SetComboIndex(
    const Value& value, const Value& fallback, const ComboBox& list, bool byCode) {
    return run(
        "SetComboIndex",
        [&]() -> std::int16_t {
            const Value& wanted = value.isNull() ? fallback : value;
            const auto& items = list.items.get();
            if (items.empty())
                return -1;
            const auto found = std::ranges::find_if(items, [&](const ListItem& item) {
                return byCode ? wanted.toDouble() == item.code : wanted.toText() == item.text;
            });
            return found == items.end() ? std::int16_t(0) : std::int16_t(found - items.begin());
        },
        "Function");
}
} // namespace genutil
