#pragma once

#include "frame/dialog_form.h"
#include "hostif/controls.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace genutil {

// The options for saving the points of an adjusted network: five members of the option set, also stored in
// the record of a job's data header table.
class frmLS_SaveOptions : public DialogForm {
public:
    explicit frmLS_SaveOptions(Component& component);

    // Inputs, set by the loader.
    std::int16_t LSOptionsMode = 1; // 1: the option set; 4: the header record
    RecordPtr LSOptPref;            // the working copy of the host's option set
    RecordPtr LSOptPrefDefaults;    // mode 4: what is shown where no options are stored; null: none
    std::string programFolder;

    // The options were saved; starts as the host's value.
    bool NewRecordSaved = false;

    Label lblPrompt;
    CheckBox chkDBPoints, chkDBPtsFixed, chkPtEntry, chkPtEntryFixed;
    std::array<OptionButton, 3> optPointEntry;
    Button cmdOK, cmdCancel;

    // `table` is null in mode 1.
    void Form_Setup(const std::shared_ptr<Recordset>& table);
    void GetDefaultData(const RecordPtr& optionSet);
    void GetLSOptionsData(Recordset& table);
    void SaveDefaultData();
    void SaveLSOptionsData(Recordset& table);

private:
    std::array<CheckBox*, 4> checks() {
        return {&chkDBPoints, &chkDBPtsFixed, &chkPtEntry, &chkPtEntryFixed};
    }
    void connectControls();
    void allowFixedPoints();
    void selectPointEntry(std::int16_t option);
    std::int16_t selectedPointEntry() const;

    std::shared_ptr<Recordset> table_;
    bool settingsChanged_ = false;
};

} // namespace genutil
