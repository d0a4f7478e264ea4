#include "preferences/frm_defaults.h"

#include "hostif/value.h"
#include "preferences/editor_choice.h"

namespace genutil {
namespace {

constexpr HelpTopics helpTopics{2100, 2100, 2143, 18811, 19014};
constexpr int okTopic = 19004, cancelTopic = 19006, pointOptionsTopic = 18813;

constexpr double captionMargin = 348; // twips that an option needs beside its caption
constexpr double editorWidth = 4200;  // twips

constexpr std::int16_t withDataPath = 1, withDataFiles = 2; // locations of list files

} // namespace

frmDefaults::frmDefaults(Component& owner)
    : DialogForm(owner, "frmDefaults", "Defaults", "Preference (Default) Settings"),
      tabPreferences(*this, "tabPreferences", {"General", "Compute"}),
      fraStartUp(*this, "fraStartUp", "Start-up"), fraListGroup(*this, "fraListGroup", "List-Files Location"),
      fraControlPrompt(*this, "fraControlPrompt", "Prompt for missing control points"),
      optStartSize{OptionButton(*this, "optStartSize0", "Maximized window"),
          OptionButton(*this, "optStartSize1", "Normal window")},
      optListGroup{OptionButton(*this, "optListGroup0", "(C:\\Program Files\\Kestal\\List)"),
          OptionButton(*this, "optListGroup1", "(Current data path)\\List"),
          OptionButton(*this, "optListGroup2", "With data files")},
      optPromptMode{OptionButton(*this, "optPromptMode0", "Single point entry"),
          OptionButton(*this, "optPromptMode1", "Multiple point entry")},
      chkLoadLast(*this, "chkLoadLast", "Load last job"),
      chkShowExtn(*this, "chkShowExtn", "Show extension on job names"),
      chkRecycleBin(*this, "chkRecycleBin", "Keep old backups in Recycle Bin"),
      chkInstantHelp(*this, "chkInstantHelp", " Show Instant Help on forms"),
      lblTestLength(*this, "lblTestLength", "", Label::Sizing::Auto),
      Label3(*this, "Label3", "Text Editor :"), lblEditor(*this, "lblEditor", ""),
      lblKfactor(*this, "lblKfactor", "Refraction Index (K-factor) :"),
      txtKfactor(*this, "txtKfactor", "0.14"), cmdSelectEdit(*this, "cmdSelectEdit", "< &Select"),
      cmdLSOptions(*this, "cmdLSOptions", "Least Squares Adjustment Options"),
      cmdLSPointOptions(*this, "cmdLSPointOptions", "LS Network Point-save Options"),
      cmdOK(*this, "cmdOK", "&OK"), cmdCancel(*this, "cmdCancel", "&Cancel"), pnlHelp(*this, "pnlHelp") {
    lblTestLength.visible = false;
    lblEditor.width = editorWidth;
    chkRecycleBin.toolTip = "Off: old backups are deleted for good.";
    txtKfactor.toolTip =
        "Coefficient of terrestrial refraction for trigonometric heights. Unit: none. Default: "
        "0.14.";
    assignTopics();
    connectControls();
    connectKeys();
    connectButtons();
}

void frmDefaults::assignTopics() {
    // In the order of the help texts, from the one after the form's own.
    int topic = helpTopics.context + 1;
    for (Control* const control : std::initializer_list<Control*>{&tabPreferences, &fraStartUp,
             &optStartSize[0], &optStartSize[1], &chkLoadLast, &chkShowExtn, &fraListGroup, &optListGroup[0],
             &optListGroup[1], &optListGroup[2], &lblEditor, &cmdSelectEdit, &chkRecycleBin, &chkInstantHelp,
             &fraControlPrompt, &optPromptMode[0], &optPromptMode[1], &txtKfactor})
        control->helpContextId = topic++;
    cmdLSOptions.helpContextId = helpTopics.firstShared;
    cmdLSPointOptions.helpContextId = pointOptionsTopic;
    cmdOK.helpContextId = okTopic;
    cmdCancel.helpContextId = cancelTopic;
}

void frmDefaults::orderFocus() {
    int next = 0;
    for (Control* const control : std::initializer_list<Control*>{&optStartSize[0], &optStartSize[1],
             &chkLoadLast, &chkShowExtn, &optListGroup[0], &optListGroup[1], &optListGroup[2], &cmdSelectEdit,
             &chkRecycleBin, &chkInstantHelp, &cmdLSOptions, &cmdLSPointOptions, &optPromptMode[0],
             &optPromptMode[1], &txtKfactor, &cmdCancel, &cmdOK, &tabPreferences})
        control->tabIndex = next++;
}

void frmDefaults::Form_Setup(const std::string& helpSource) {
    run("Form_Setup", [&] {
        setUpKeysAndHelp(helpTopics, helpSource);
        orderFocus();
        loadPreferences();
        LSOptionsSaved = false;
        tabPreferences.current = 0;
        OKPressed = false;
        showAsSetUp();
    });
}

void frmDefaults::choose(Options group, std::size_t index) {
    for (std::size_t i = 0; i < group.size(); ++i)
        if (i != index)
            group[i].selected = false;
    group[index].selected = true;
}

void frmDefaults::loadPreferences() {
    Record& from = required(genPrefs, "genPrefs");
    editorPath_ = editorWithoutSwitches(from.get(genprefs::DefaultEditor));
    showEditor();
    choose(optStartSize, from.get(genprefs::StartMaximized) ? 0 : 1);
    chkLoadLast.ticked = from.get(genprefs::LoadLastJob);
    chkLoadLast.enabled = true;
    // The program's own folder may not be written to, so it is not where lists go unless it is chosen anew.
    std::int16_t location = from.get(genprefs::ListGroup);
    if (location < withDataPath || location > withDataFiles) {
        location = withDataPath;
        from.put(genprefs::ListGroup, location);
    }
    choose(optListGroup, std::size_t(location));
    lblTestLength.caption = required(prog, "prog").get(program::ProgramFolder) + "List";
    optListGroup[0].width = lblTestLength.width + captionMargin;
    optListGroup[0].caption = lblTestLength.caption.get();
    chkShowExtn.ticked = from.get(genprefs::ShowExtension);
    choose(optPromptMode, from.get(genprefs::MultiplePointEntry) ? 1 : 0);
    txtKfactor.text = Value(from.get(genprefs::KFactor)).toText();
    chkRecycleBin.ticked = from.get(genprefs::KeepBackupsInRecycleBin);
}

void frmDefaults::savePreferences() {
    Record& into = *genPrefs;
    // As the box shows it: with a point or with the locale's own separator.
    into.put(genprefs::KFactor, leadingNumber(withPoint(txtKfactor.text.get())));
    into.put(genprefs::DefaultEditor, editorPath_);
    into.put(genprefs::StartMaximized, optStartSize[0].selected);
    into.put(genprefs::LoadLastJob, chkLoadLast.ticked);
    into.put(genprefs::ShowExtension, chkShowExtn.ticked);
    for (std::int16_t i = 0; std::size_t(i) < optListGroup.size(); ++i)
        if (optListGroup[std::size_t(i)].selected) {
            prog->put(program::ListFolder,
                component().genProcs().ListFolderFor(i, prog->get(program::DataPath), JobPath));
            into.put(genprefs::ListGroup, i);
            break;
        }
    into.put(genprefs::MultiplePointEntry, optPromptMode[1].selected);
    into.put(genprefs::KeepBackupsInRecycleBin, chkRecycleBin.ticked);
}

void frmDefaults::showEditor() {
    lblEditor.caption = component().genProcs().FitPathToLabel(editorPath_, lblEditor, *this);
    lblEditor.toolTip = editorPath_;
}

} // namespace genutil
