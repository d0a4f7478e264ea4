#pragma once

#include "frame/dialog_form.h"
#include "hostif/controls.h"
#include "lsoptions/ls_layout.h"
#include "lsoptions/ls_option_table.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>

namespace genutil {

// The least-squares options dialog: edits one option set, or the options in a record of a job's data header
// table. Which options there are, how they are checked and stored is in the option table.
class frmLS_Options : public DialogForm {
public:
    explicit frmLS_Options(Component& component);

    // Inputs, set by the loader.
    std::int16_t LSOptionsMode = 1; // 1: the option set; 2: a page's record; 3, 4: the header record
    std::int16_t DataMode = 0;      // mode 2: which page
    RecordPtr LSOptPref;            // the working copy of the host's option set
    RecordPtr LSOptPrefDefaults;    // null: none
    std::string programFolder;

    // Something was saved; starts as the host's value.
    bool NewRecordSaved = false;

    std::deque<TextBox> boxes;
    std::deque<CheckBox> checks;
    std::deque<ComboBox> lists;
    std::deque<Label> labels;
    std::deque<Label> dummyLabels; // stand for the lists in instant help
    Button cmdOK, cmdCancel, cmdDefaults;
    Panel pnlHelp;
    // What was understood of an entry that is more than a number.
    Label lblUnderstood;

    // The control of an option. OutOfRange for an option of another kind.
    TextBox& boxOf(int option);
    CheckBox& checkOf(int option);
    ComboBox& listOf(int option);

    // `table` is null in mode 1.
    void Form_Setup(const std::string& helpSource, const std::shared_ptr<Recordset>& table);
    void SetupComboLists();

    // Between the controls and a record, or an option set.
    void GetLSOptionsData(Recordset& record);
    void SaveLSOptionsData(Recordset& record);
    void GetDefaultData(const RecordPtr& optionSet);
    void SaveDefaultData();
    // The position of the item with this code, or else this text; 0 when no item has it, -1 for an empty
    // list.
    std::int16_t SetComboIndex(const Value& value, const Value& fallback, const ComboBox& list, bool byCode);

    void GetDataPage(std::int32_t page);
    void SaveDataPage(std::int32_t page);
    void GetTravHeaderData();
    void SaveHeaderData();

    bool isChanged() const { return dataChanged_; }

private:
    void makeControls();
    void connectControls();
    void connectBox(const LSOption& option);
    void connectButtons();

    void loadByMode(const std::shared_ptr<Recordset>& table);
    void greySpatialRows();
    void saveByMode();
    // The page that DataMode selects; -1: none.
    std::int32_t page() const;
    bool findPage(std::int32_t page);

    void enterBox(TextBox& box);
    void leaveBox(const LSOption& option);
    // Shows the message; then the focus goes back into the box.
    void refuse(TextBox& box, const std::string& message);
    void accept(TextBox& box);
    void noteChange(const LSOption& option);
    // Whether the option's value is not that of the defaults object; never without one.
    bool differsFromDefault(const LSOption& option);
    void showMark(const LSOption& option);
    void showMarks();
    // Puts the default value, and what OK would make of the stored one, into the control's tooltip.
    void explain(const LSOption& option);
    // Notes what the control shows in place of the stored value.
    void noteStored(const LSOption& option, const Value& stored);
    void forgetStored(const LSOption& option);
    void sayUnderstood(const LSOption& option, const std::string& typed);
    // What the option's control shows, and what it shows for the default.
    std::string shownValue(const LSOption& option);
    std::string shownDefault(const LSOption& option);
    void noteChoice(int option);
    void clickScaleErrorEllipses();
    void clickUnitWeights();
    void cancel();

    std::string formatted(const LSOption& option, double value);
    // What a check box or a list shows, as one number.
    std::int32_t stateOf(int option);
    Value memberOf(const Record& optionSet, const LSOption& option) const;
    void fillFrom(const LSOption& option, const Value& value, const Value& fallback);
    std::string tagOf(const LSOption& option) const;
    Recordset& table() const;

    std::array<Control*, lsOptionCount> controls_{}; // by option
    std::map<int, std::int32_t> initialState_;       // of check boxes and lists, by option
    std::map<int, std::string> storedOtherwise_; // stored values that are not as they are shown, by option
    std::shared_ptr<Recordset> table_;
    std::string entryText_;
    bool setupDone_ = false;
    bool dataChanged_ = false;
};

} // namespace genutil
