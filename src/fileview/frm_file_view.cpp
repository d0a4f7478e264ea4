#include "fileview/frm_file_view.h"

#include "fileview/placement.h"
#include "text/blanks.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace genutil {
namespace {

// The nominal window frame (60 left and right), the title bar and the menu bar (350 each).
constexpr WindowChrome windowChrome{.width = 120, .height = 700};
constexpr WindowChrome buttonPanelSpacing{
    .width = 120, .height = 550}; // with the button panel instead of the menu

constexpr double designWidth = 9480;
constexpr double designHeight = 6900;
constexpr double helpPanelHeight = 600;
constexpr HelpTopics topics{
    .context = 1800, .first = 1801, .last = 1805, .firstShared = 19999, .lastShared = 19999};
constexpr int historyTopic = 7700;

std::string measuringText() {
    std::string digits;
    for (int i = 0; i < 84; ++i)
        digits += char('0' + (i + 1) % 10);
    return digits;
}

} // namespace

frmFileView::frmFileView(Component& owner)
    : DialogForm(owner, "frmFileView", "Fileview", fileDisplayTitle, windowChrome),
      mnu_File(*this, "mnu_File", "&File"),
      mnu_OpenFile(*this, "mnu_OpenFile", "&Open ...", &mnu_File, "Ctrl+O"),
      mnu_Save(*this, "mnu_Save", "&Save", &mnu_File, "Ctrl+S"),
      mnu_SaveAs(*this, "mnu_SaveAs", "Save-&As", &mnu_File),
      mnu_Edit(*this, "mnu_Edit", "&External Editor", &mnu_File),
      mnu_Print(*this, "mnu_Print", "&Print ...", &mnu_File, "Ctrl+P"),
      mnu_PrintPreview(*this, "mnu_PrintPreview", "Print Pre&view ...", &mnu_File, "Ctrl+Shift+P"),
      mnu_ExportPdf(*this, "mnu_ExportPdf", "Export to P&DF ...", &mnu_File),
      mnu_Break(*this, "mnu_Break", "-", &mnu_File), mnu_Close(*this, "mnu_Close", "&Close", &mnu_File),
      mnu_View(*this, "mnu_View", "&View"), mnu_Refresh(*this, "mnu_Refresh", "&Refresh", &mnu_View),
      mnu_Reload(*this, "mnu_Reload", "Re&load File", &mnu_View, "F5"),
      mnu_BreakFind(*this, "mnu_BreakFind", "-", &mnu_View),
      mnu_Find(*this, "mnu_Find", "&Find ...", &mnu_View, "Ctrl+F"),
      mnu_FindNext(*this, "mnu_FindNext", "Find &Next", &mnu_View, "F3"),
      mnu_FindPrevious(*this, "mnu_FindPrevious", "Find &Previous", &mnu_View, "Shift+F3"),
      mnu_GoToLine(*this, "mnu_GoToLine", "&Go to Line ...", &mnu_View, "Ctrl+L"),
      mnu_BreakZoom(*this, "mnu_BreakZoom", "-", &mnu_View),
      mnu_ZoomIn(*this, "mnu_ZoomIn", "Zoom &In", &mnu_View, "Ctrl++; Ctrl+="),
      mnu_ZoomOut(*this, "mnu_ZoomOut", "Zoom &Out", &mnu_View, "Ctrl+-"),
      mnu_ZoomNormal(*this, "mnu_ZoomNormal", "Normal Si&ze", &mnu_View, "Ctrl+0"),
      mnu_WrapLines(*this, "mnu_WrapLines", "&Wrap Lines", &mnu_View), rtbViewText(*this, "rtbViewText"),
      lblCheckLength(*this, "lblCheckLength", measuringText()), pnlHelp(*this, "pnlHelp"),
      pnlButtons(*this, "pnlButtons"), cmdClose(*this, "cmdClose", "&Close"),
      cmdSelect(*this, "cmdSelect", "&Select"), cmdEdit(*this, "cmdEdit", "&Edit"),
      cmdPrint(*this, "cmdPrint", "&Print"), findBar(*this, rtbViewText), status(*this, rtbViewText),
      notice(*this, owner.files()), journal(owner.files()) {
    width = designWidth;
    height = designHeight;
    rtbViewText.width = designWidth - windowChrome.width;
    rtbViewText.height = designHeight - windowChrome.height;
    rtbViewText.tabIndex = 4;
    rtbViewText.helpContextId = 1805;
    pnlHelp.height = helpPanelHeight;
    pnlHelp.top = rtbViewText.height - helpPanelHeight;
    pnlHelp.font = Font{.name = "Arial"};
    mnu_WrapLines.isCheckable = true;
    lblCheckLength.visible = false;
    lblCheckLength.font = Font{.name = "Courier New"};
    pnlButtons.visible = false;
    cmdClose.isDefault = true;
    Button* const buttons[] = {&cmdClose, &cmdSelect, &cmdEdit, &cmdPrint};
    for (int i = 0; i < 4; ++i) {
        buttons[i]->visible = false;
        buttons[i]->helpContextId = topics.first + i;
    }
    connectMenus();
    connectButtons();
    connectText();
    connectTools();
    connectWindow();
    Control* const furtherTabOrder[] = {&findBar.txtFind, &findBar.cmdFindNext, &findBar.cmdFindPrevious,
        &findBar.cmdFindClose, &findBar.chkMatchCase, &findBar.chkWholeWord, &status.cboEncoding,
        &notice.cmdReload, &notice.cmdIgnore};
    for (int next = rtbViewText.tabIndex; Control * control : furtherTabOrder)
        control->tabIndex = ++next;
}

void frmFileView::connectMenus() {
    struct Command {
        MenuItem& item;
        void (frmFileView::*action)();
    };
    for (const Command& command : {
             Command{mnu_OpenFile, &frmFileView::OpenFile},
             Command{mnu_Save, &frmFileView::SaveTheFile},
             Command{mnu_SaveAs, &frmFileView::SaveAs},
             Command{mnu_Edit, &frmFileView::EditFile},
             Command{mnu_Reload, &frmFileView::ReloadFile},
             Command{mnu_GoToLine, &frmFileView::GoToLine},
         })
        on(command.item.click, command.item.name() + "_Click",
            [this, action = command.action] { (this->*action)(); });
    const auto print = [this] {
        if (settleChanges())
            PrintFile();
    };
    on(mnu_Print.click, "mnu_Print_Click", print);
    on(mnu_PrintPreview.click, "mnu_PrintPreview_Click", [this] {
        if (settleChanges())
            PrintPreview();
    });
    on(mnu_ExportPdf.click, "mnu_ExportPdf_Click", [this] {
        if (settleChanges())
            ExportPdf();
    });
    on(cmdPrint.click, "cmdPrint_Click", print);
    on(mnu_Close.click, "mnu_Close_Click", [this] { unload(); });
    on(mnu_Refresh.click, "mnu_Refresh_Click", [this] { refresh(); });
}

void frmFileView::connectButtons() {
    on(cmdClose.click, "cmdClose_Click", [this] { unload(); });
    on(cmdSelect.click, "cmdSelect_Click", [this] { OpenFile(); });
    on(cmdEdit.click, "cmdEdit_Click", [this] { EditFile(); });
    for (Button* button : {&cmdClose, &cmdSelect, &cmdEdit, &cmdPrint})
        on(button->keyDown, button->name() + "_KeyDown",
            [this, button](KeyEvent& event) { KeyResponse(*button, event.code); });
    followMouse({&cmdClose, &cmdEdit, &cmdPrint, &cmdSelect, &rtbViewText});
}

void frmFileView::connectText() {
    on(rtbViewText.gotFocus, "rtbViewText_GotFocus", [this] { cmdClose.isDefault = false; });
    on(rtbViewText.keyDown, "rtbViewText_KeyDown", [this](KeyEvent& event) {
        if (event.code == key::Enter && cmdClose.isDefault)
            unload();
    });
    on(rtbViewText.change, "rtbViewText_Change", [this] {
        // Text loaded before the form is first shown is not a change.
        modified_ = isShown();
        edited_ = true;
        mnu_Save.enabled = modified_;
        status.fileSize.reset();
        status.showText();
    });
    on(rtbViewText.edited, "rtbViewText_Edited",
        [this](const text::TextChange&) { journal.noteEdit(*rtbViewText.document()); });
    on(rtbViewText.selectionChanged, "rtbViewText_SelChange", [this] { status.showSelection(); });
}

void frmFileView::connectWindow() {
    openHelpOnF1([this] { return prog->get(program::ProgramFolder); });
    on(resize, "Form_Resize", [this] { windowResized(); });
    on(queryUnload, "Form_QueryUnload", [this](bool& refuse, UnloadReason) {
        Cancelled = false;
        if (!editSessionActive_)
            return;
        refuse = true;
        desktop().ask({.text = "You have an edit session active !!\nPlease close the editor first",
            .icon = Icon::Information});
    });
    on(unloaded, "Form_Unload", [this] { windowUnloaded(); });
}

void frmFileView::Form_Setup(const std::string& helpSource) {
    run("Form_Setup", [&] {
        setUpKeysAndHelp(topics, helpSource);
        pnlHelp.visible = false;
        Button* const tabOrder[] = {&cmdClose, &cmdSelect, &cmdEdit, &cmdPrint};
        for (int i = 0; i < 4; ++i)
            tabOrder[i]->tabIndex = i;
        rtbViewText.clear();
        savedWindowState_ = viewState();
        rememberPlacement_ = true;
        fileProcs_ = component().objects().createFileProcedures();
        genProcs_ = component().objects().createGeneralProcedures();
        savedPlacement_ = readPlacementSetting();
        SetEdit(false);
        rtbViewText.font = Font{.name = "Courier New", .bold = true};
        setUpMode();
        commonDialog1.flags = dialogflags::HideReadOnly | dialogflags::KeepFolder;
        setupDone_ = true;
        modified_ = false;
        offerUnsaved();
        showAsSetUp();
    });
}

void frmFileView::setUpMode() {
    const ViewModeRules& mode = viewMode(ViewMode);
    caption = mode.titleSource == ViewModeRules::Title::FromSystemInfo ? component().sysInfo().ViewTitle()
                                                                       : std::string(mode.title);
    fileFormat_ = FileFormat::PlainText;
    if (mode.edit)
        SetEdit(true);
    SetMenuOrButtons(mode.open, editAllowed_, mode.print);
    rememberPlacement_ = mode.rememberPlacement;
    wrapLines();
    if (mode.isHistory) {
        // Prose, for reading: neither fixed-pitch nor bold.
        rtbViewText.font = Font{.name = "MS Sans Serif", .size = 9.75};
        helpContextId = historyTopic;
    }
    if (mode.atSetUp == ViewModeRules::AtSetUp::ShowsNothing) {
        FileToView.clear();
        edited_ = false; // clearing the box was no edit
        LargeFileView(false, savedPlacement_);
        status.showText();
    } else {
        // A rich-text file shows as what it is, whichever way it comes here.
        fileFormat_ = formatOf(FileToView);
        DisplayFile();
    }
    enableOwnCommands();
}

void frmFileView::SetFormCaption() {
    run("SetFormCaption", [this] {
        std::string title = caption;
        const auto colon = title.find(": ");
        if (colon == std::string::npos)
            title += ": ";
        else
            title.erase(colon + 2);
        if (viewMode(ViewMode).isHistory)
            title.erase(title.find(':'));
        else
            title += FileToView;
        caption = title;
    });
}

void frmFileView::SetMenuOrButtons(bool open, bool edit, bool print) {
    run("SetMenuOrButtons", [&] {
        pnlButtons.visible = false;
        mnu_File.visible = true;
        mnu_View.visible = true;
        rtbViewText.height = pnlHelp.top + pnlHelp.height;
        pnlHelp.visible = false;
        const bool hasFile = !FileToView.empty();
        mnu_OpenFile.enabled = open;
        mnu_Save.enabled = modified_ && edit;
        mnu_Print.enabled = hasFile && print;
        mnu_SaveAs.visible = edit;
        mnu_SaveAs.enabled = hasFile && mnu_SaveAs.visible;
        if (fileFormat_ == FileFormat::PlainText) {
            mnu_Edit.visible = !text::isBlank(Editor);
            mnu_Edit.enabled = !text::isBlank(Editor) && edit;
        }
        mnu_Close.enabled = true;
        mnu_Refresh.enabled = true;
    });
}

void frmFileView::SetEdit(bool edit) {
    run("SetEdit", [&] {
        editAllowed_ = edit;
        rtbViewText.locked = !edit;
    });
}

void frmFileView::KeyResponse(Control&, int keyCode) {
    run("KeyResponse", [&] {
        constexpr std::array pageKeys{key::PageUp, key::PageDown, key::End, key::Home};
        if (std::ranges::find(pageKeys, keyCode) == pageKeys.end())
            return;
        rtbViewText.setFocus();
        rtbViewText.sentKey(keyCode);
    });
}

void frmFileView::SetTextRTF(WindowState restoreState) {
    run("SetTextRTF", [&] {
        if (windowState == WindowState::Minimized)
            windowState = restoreState;
        const double panel = pnlButtons.visible ? pnlButtons.height.get() : 0;
        const WindowChrome& spacing = pnlButtons.visible ? buttonPanelSpacing : windowChrome;
        const double newWidth = std::nearbyint(width - spacing.width);
        const double newHeight = std::nearbyint(height - spacing.height - panel);
        if (viewMode(ViewMode).isHistory)
            return;
        if (newWidth > 0)
            rtbViewText.width = newWidth;
        if (newHeight > 0)
            rtbViewText.height = newHeight;
    });
}

void frmFileView::windowResized() {
    if (resizing_ || windowState == WindowState::Minimized)
        return;
    resizing_ = true;
    struct Guard {
        bool& flag;
        ~Guard() { flag = false; }
    } guard{resizing_};
    SetTextRTF(windowState);
    savedWindowState_ = windowState;
    if (rememberPlacement_ && setupDone_)
        storePlacement();
    wrapLines();
}

void frmFileView::wrapLines() {
    const bool always = viewMode(ViewMode).isHistory || fileFormat_ == FileFormat::RichText;
    mnu_WrapLines.enabled = !always;
    mnu_WrapLines.checked = always || wrapChosen_;
    rtbViewText.wrapsLines = mnu_WrapLines.checked;
}

void frmFileView::windowUnloaded() {
    if (modified_ && editAllowed_) {
        bool settled = false;
        handle("Form_Unload", [&] { settled = SaveChanges(); });
        if (!settled)
            handle("Form_Unload", [this] { rescueText(); });
    }
    notice.forget();
    journal.forget();
    if (rememberPlacement_)
        prog->put(program::FileViewState, std::int16_t(savedWindowState_));
    fileProcs_.reset();
    genProcs_.reset();
}

} // namespace genutil
