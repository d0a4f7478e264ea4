#include "lsoptions/c_ls_opts_loader.h"
#include "preferences/editor_choice.h"
#include "preferences/frm_defaults.h"

// What the user does with the preferences.
namespace genutil {
namespace {

constexpr const char* caution =
    "CAUTION !!\r\n\r\nIf you change this setting, NO old backups will be saved\r\n"
    "in the Recycle Bin but will be PERMANENTLY DELETED !!\r\n\r\n"
    "ARE YOU SURE you want to do this?\r\n";

} // namespace

void frmDefaults::connectControls() {
    for (const Options group : {Options(optStartSize), Options(optListGroup), Options(optPromptMode)})
        for (std::size_t i = 0; i < group.size(); ++i) {
            const std::string& name = group[i].name();
            on(group[i].click, name.substr(0, name.size() - 1) + "_Click", [group, i] { choose(group, i); });
        }
    on(chkRecycleBin.click, "chkRecycleBin_Click", [this] {
        if (!chkRecycleBin.ticked && isShown())
            askAboutBackups();
    });
    on(txtKfactor.gotFocus, "txtKfactor_GotFocus",
        [this] { component().genProcs().SelectAllText(*activeControl()); });
    followMouse({&tabPreferences, &fraStartUp, &fraListGroup, &fraControlPrompt, &optStartSize[0],
        &optStartSize[1], &optListGroup[0], &optListGroup[1], &optListGroup[2], &optPromptMode[0],
        &optPromptMode[1], &chkLoadLast, &chkShowExtn, &chkRecycleBin, &chkInstantHelp, &lblEditor,
        &cmdSelectEdit, &txtKfactor, &cmdLSOptions, &cmdLSPointOptions, &cmdOK, &cmdCancel});
}

void frmDefaults::askAboutBackups() {
    if (component().desktop().ask({.text = caution,
            .icon = Icon::Question,
            .buttons = Buttons::OkCancel,
            .defaultAnswer = Answer::Cancel}) == Answer::Cancel)
        chkRecycleBin.ticked = true;
}

void frmDefaults::connectKeys() {
    openHelpOnF1([this] { return required(prog, "prog").get(program::ProgramFolder); });
    toggleOnSpace();
    askOnLeaving(cmdOK, cmdCancel, [this] {
        return LSOptionsSaved ||
               editorPath_ !=
                   editorWithoutSwitches(required(genPrefs, "genPrefs").get(genprefs::DefaultEditor));
    });
    moveOnEnter();
    on(keyDown, "Form_KeyDown", [this](KeyEvent& event) { handleKey(event); });
}

void frmDefaults::handleKey(KeyEvent& event) {
    GeneralProcedures& genProcs = component().genProcs();
    switch (event.ctrl || event.alt ? 0 : event.code) {
    case key::Home:
        tabPreferences.current = 0; // where the first control stands
        optStartSize[0].setFocus();
        break;
    case key::End:
        cmdOK.setFocus(); // the last control that is always shown
        break;
    case key::Up:
        genProcs.FocusPrevious(*this, 1, false);
        break;
    case key::Down:
        genProcs.FocusNext(*this, 1, false);
        break;
    default:
        if (auto* const box = dynamic_cast<TextBox*>(activeControl());
            box && event.ctrl && event.code == key::Delete)
            box->userEdit("");
        else
            return;
    }
    event.code = 0;
}

void frmDefaults::connectButtons() {
    on(cmdSelectEdit.click, "cmdSelectEdit_Click", [this] { chooseEditor(); });
    on(cmdLSOptions.click, "cmdLSOptions_Click", [this] { editOptions(); });
    on(cmdLSPointOptions.click, "cmdLSPointOptions_Click", [this] { editPointOptions(); });
    on(cmdOK.click, "cmdOK_Click", [this] {
        component().genProcs().BeforeSave(*this);
        savePreferences();
        instantHelpChosen = chkInstantHelp.ticked;
        OKPressed = true;
        unload();
    });
    on(cmdCancel.click, "cmdCancel_Click", [this] {
        LSOptionsSaved = false;
        unload();
    });
    // The close box counts as OK; what OK cannot do leaves the window open.
    on(queryUnload, "Form_QueryUnload", [this](bool& refused, UnloadReason reason) {
        if (reason != UnloadReason::CloseBox)
            return;
        cmdOK.userPress();
        refused = !OKPressed;
    });
}

void frmDefaults::chooseEditor() {
    FileDialog dialog = editorDialog(component().genProcs(), required(prog, "prog"), editorPath_);
    if (!component().desktop().showOpen(*this, dialog))
        return; // a cancelled dialog leaves the editor as it was
    if (dialog.fileName.find(switchSeparator) != std::string::npos) {
        component().desktop().ask(
            {.text = "The name of a text editor cannot contain the character 127:\r\n" + dialog.fileName,
                .icon = Icon::Information});
        return;
    }
    editorPath_ = dialog.fileName;
    showEditor();
}

void frmDefaults::editOptions() {
    cLS_OptsLoader(component())
        .LoadLSOptionsForm(
            MenuIhelp, lsmode::OptionSet, LSOptionsSaved, LSOptPrefs, prog, nullptr, nullptr, 0);
}

void frmDefaults::editPointOptions() {
    cLS_SaveOptsLoader(component())
        .LoadLSSaveOptsForm(lsmode::OptionSet, LSOptionsSaved, LSOptPrefs, prog, nullptr, nullptr);
}

} // namespace genutil
