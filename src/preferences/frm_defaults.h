#pragma once

#include "frame/dialog_form.h"
#include "hostif/controls.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace genutil {

// The preferences dialog. It works on copies of the host's objects, which the loader hands back.
class frmDefaults : public DialogForm {
public:
    explicit frmDefaults(Component& component);

    // Inputs, set by the loader; the records are copies.
    RecordPtr prog, genPrefs, LSOptPrefs;
    std::string JobPath; // "" without a current job

    // Results. OKPressed: the preferences are in the copies. LSOptionsSaved: so are options of the
    // adjustment.
    bool OKPressed = false;
    bool LSOptionsSaved = false;
    bool instantHelpChosen = false; // after OK: whether forms show instant help

    Tabs tabPreferences;
    Panel fraStartUp, fraListGroup, fraControlPrompt;
    std::array<OptionButton, 2> optStartSize; // maximized, normal
    std::array<OptionButton, 3> optListGroup;
    std::array<OptionButton, 2> optPromptMode; // one point at a time, all at once
    CheckBox chkLoadLast, chkShowExtn, chkRecycleBin, chkInstantHelp;
    Label lblTestLength; // measures the caption of optListGroup(0)
    Label Label3, lblEditor, lblKfactor;
    TextBox txtKfactor;
    Button cmdSelectEdit, cmdLSOptions, cmdLSPointOptions, cmdOK, cmdCancel;
    Panel pnlHelp;

    void Form_Setup(const std::string& helpSource);

private:
    using Options = std::span<OptionButton>;

    void assignTopics();
    void orderFocus();
    void connectControls();
    void connectKeys();
    void connectButtons();
    // Selects the option and clears the others of its group.
    static void choose(Options group, std::size_t index);

    void loadPreferences();
    void savePreferences();
    void showEditor();
    void chooseEditor();
    void askAboutBackups();
    void editOptions();
    void editPointOptions();
    void handleKey(KeyEvent& event);

    std::string editorPath_; // without switches
};

} // namespace genutil
