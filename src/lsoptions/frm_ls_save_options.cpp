#include "lsoptions/frm_ls_save_options.h"

#include "lsoptions/ls_option_table.h"

#include <algorithm>

namespace genutil {
namespace {

constexpr int helpTopic = 8340;

// The options' numbers, in the order of the check boxes; the rule for entries comes last.
constexpr int firstCheck = 49;
constexpr int pointEntry = 53;

const Property<bool>& checkMember(std::size_t i) {
    return std::get<Property<bool>>(lsOption(firstCheck + int(i)).member);
}
const Property<std::int16_t>& entryMember() {
    return std::get<Property<std::int16_t>>(lsOption(pointEntry).member);
}

} // namespace

frmLS_SaveOptions::frmLS_SaveOptions(Component& owner)
    : DialogForm(owner, "frmLS_SaveOptions", "LS_SaveOptions", "LS Network Adjustment Save Options"),
      lblPrompt(*this, "lblPrompt",
          "These settings will be displayed again for confirmation prior to saving successfully adjusted "
          "network points"),
      chkDBPoints(*this, "chkDBPoints", " Update points in main database with adjusted network points"),
      chkDBPtsFixed(*this, "chkDBPtsFixed", " Replace existing Fixed points"),
      chkPtEntry(*this, "chkPtEntry", " Update Point Entry tables with adjusted network points"),
      chkPtEntryFixed(*this, "chkPtEntryFixed", " Replace Fixed points"),
      optPointEntry{OptionButton(*this, "optPointEntry0", "Add un-listed points only"),
          OptionButton(*this, "optPointEntry1", "Replace listed points only"),
          OptionButton(*this, "optPointEntry2", "Add and/or replace all points")},
      cmdOK(*this, "cmdOK", "OK"), cmdCancel(*this, "cmdCancel", "&Cancel") {
    int next = 0;
    for (Control* control : std::initializer_list<Control*>{&chkDBPoints, &chkDBPtsFixed, &chkPtEntry,
             &optPointEntry[0], &optPointEntry[1], &optPointEntry[2], &chkPtEntryFixed, &cmdOK, &cmdCancel})
        control->tabIndex = next++;
    helpContextId = helpTopic;
    optPointEntry[0].selected = true;
    for (OptionButton& option : optPointEntry)
        option.enabled = false;
    chkDBPtsFixed.enabled = false;
    chkPtEntryFixed.enabled = false;
    cmdOK.isDefault = true;
    cmdCancel.isCancel = true;
    connectControls();
}

void frmLS_SaveOptions::connectControls() {
    openHelpOnF1([this] { return programFolder; });
    for (CheckBox* check : {&chkDBPoints, &chkDBPtsFixed, &chkPtEntry, &chkPtEntryFixed})
        on(check->click, check->name() + "_Click", [this, check] {
            settingsChanged_ = true;
            if (check == &chkDBPoints) {
                chkDBPtsFixed.enabled = chkDBPoints.ticked.get();
                if (!chkDBPoints.ticked)
                    chkDBPtsFixed.ticked = false;
            } else if (check == &chkPtEntry) {
                for (OptionButton& option : optPointEntry)
                    option.enabled = chkPtEntry.ticked.get();
                allowFixedPoints();
            }
        });
    for (OptionButton& option : optPointEntry)
        on(option.click, "optPointEntry_Click", [this, &option] {
            settingsChanged_ = true;
            for (OptionButton& other : optPointEntry)
                if (&other != &option)
                    other.selected = false;
            allowFixedPoints();
            if (&option == &optPointEntry[0])
                chkPtEntryFixed.ticked = false;
        });
    on(cmdOK.click, "cmdOK_Click", [this] {
        if (settingsChanged_ && LSOptionsMode == lsmode::HeaderAndSet)
            SaveLSOptionsData(required(table_, "dataHeaderTable"));
        if (settingsChanged_ && (LSOptionsMode == lsmode::HeaderAndSet || LSOptionsMode == lsmode::OptionSet))
            SaveDefaultData();
        unload();
    });
    const auto cancel = [this] {
        settingsChanged_ = false;
        unload();
    };
    on(cmdCancel.click, "cmdCancel_Click", cancel);
    on(queryUnload, "Form_QueryUnload", [cancel](bool&, UnloadReason reason) {
        if (reason != UnloadReason::Code)
            cancel();
    });
    on(unloaded, "Form_Unload", [this] { component().desktop().setPointer(Pointer::Default); });
}

// Fixed points are replaced only by an entry that replaces points.
void frmLS_SaveOptions::allowFixedPoints() {
    chkPtEntryFixed.enabled = chkPtEntry.ticked && (optPointEntry[1].selected || optPointEntry[2].selected);
}

void frmLS_SaveOptions::Form_Setup(const std::shared_ptr<Recordset>& table) {
    procedure(
        component(), [] { return std::string("(Form) frmLSSaveOptions::Sub Form_Setup"); },
        [&] {
            keyPreview = true;
            if (LSOptionsMode == lsmode::OptionSet) {
                GetDefaultData(LSOptPref);
            } else if (LSOptionsMode == lsmode::HeaderAndSet) {
                table_ = table;
                GetLSOptionsData(required(table_, "dataHeaderTable"));
            }
            showAsSetUp();
            table_.reset();
        });
}

void frmLS_SaveOptions::selectPointEntry(std::int16_t option) {
    for (std::size_t i = 0; i < optPointEntry.size(); ++i)
        optPointEntry[i].selected = option >= 0 && i == std::size_t(option);
    if (option >= std::int16_t(optPointEntry.size()))
        throw Error(errors::OutOfRange, "There is no point entry rule " + std::to_string(option));
}

std::int16_t frmLS_SaveOptions::selectedPointEntry() const {
    const auto found = std::ranges::find_if(optPointEntry, [](const auto& o) { return o.selected.get(); });
    return found == optPointEntry.end() ? std::int16_t(-1) : std::int16_t(found - optPointEntry.begin());
}

void frmLS_SaveOptions::GetDefaultData(const RecordPtr& optionSet) {
    run("GetDefaultData", [&] {
        const Record& from = required(optionSet, "the option set");
        for (std::size_t i = 0; i < checks().size(); ++i)
            checks()[i]->ticked = from.get(checkMember(i));
        selectPointEntry(from.get(entryMember()));
    });
}

void frmLS_SaveOptions::GetLSOptionsData(Recordset& table) {
    run("GetLSOptionsData", [&] {
        const auto stored = [&](const auto& member) {
            return component().genProcs().FieldOrDefault(
                table.field(member.name), Value(required(LSOptPref, "LSOptPref").get(member)));
        };
        // A table without a record, and one without these fields, has no options stored.
        bool isStored = false;
        try {
            if (table.RecordCount() > 0)
                table.MoveFirst();
            if (!table.EOF_()) {
                chkDBPoints.ticked = stored(checkMember(0)).toBool();
                isStored = true;
            }
        } catch (const Error&) {
        }
        if (!isStored) {
            GetDefaultData(LSOptPrefDefaults);
            settingsChanged_ = true;
            return;
        }
        for (std::size_t i = 0; i < checks().size(); ++i)
            checks()[i]->ticked = stored(checkMember(i)).toBool();
        selectPointEntry(stored(entryMember()).toInt16());
    });
}

void frmLS_SaveOptions::SaveDefaultData() {
    run("SaveDefaultData", [&] {
        Record& into = required(LSOptPref, "LSOptPref");
        for (std::size_t i = 0; i < checks().size(); ++i)
            into.put(checkMember(i), checks()[i]->ticked);
        into.put(entryMember(), selectedPointEntry());
        NewRecordSaved = true;
    });
}

void frmLS_SaveOptions::SaveLSOptionsData(Recordset& table) {
    run("SaveLSOptionsData", [&] {
        if (table.RecordCount() > 0) {
            table.MoveFirst();
            table.Edit();
        } else {
            table.AddNew();
        }
        NewRecordSaved = true;
        for (std::size_t i = 0; i < checks().size(); ++i)
            table.setField(checkMember(i).name, checks()[i]->ticked.get());
        table.setField(entryMember().name, selectedPointEntry());
        table.Update();
    });
}

} // namespace genutil
