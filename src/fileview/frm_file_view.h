#pragma once

#include "fileview/change_notice.h"
#include "fileview/edit_journal.h"
#include "fileview/find_bar.h"
#include "fileview/report_print.h"
#include "fileview/view_modes.h"
#include "fileview/viewer_status.h"
#include "frame/dialog_form.h"
#include "hostif/controls.h"
#include "hostif/report_text.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace genutil {

// The file viewer: shows one of the product's text outputs, or a rich-text document, in a window fitted to
// it; the text can be edited in place, saved, and opened in an external editor. Lengths are twips.
class frmFileView : public DialogForm {
public:
    explicit frmFileView(Component& component);

    // Inputs, set by the loader.
    std::int16_t ViewMode = 0;
    std::string FileToView; // full path; empty: none
    std::string Editor;     // command line of the external editor; empty: none
    RecordPtr prog;         // a copy of the host's program object

    // Result for the host.
    bool Cancelled = false;

    MenuItem mnu_File, mnu_OpenFile, mnu_Save, mnu_SaveAs, mnu_Edit, mnu_Print, mnu_PrintPreview,
        mnu_ExportPdf, mnu_Break, mnu_Close;
    MenuItem mnu_View, mnu_Refresh;
    // What users of viewers expect beyond the commands above.
    MenuItem mnu_Reload, mnu_BreakFind, mnu_Find, mnu_FindNext, mnu_FindPrevious, mnu_GoToLine;
    MenuItem mnu_BreakZoom, mnu_ZoomIn, mnu_ZoomOut, mnu_ZoomNormal, mnu_WrapLines;
    ReportText rtbViewText;
    Label lblCheckLength; // for measuring; never shown
    Panel pnlHelp;
    Panel pnlButtons;
    Button cmdClose, cmdSelect, cmdEdit, cmdPrint;
    FileDialog commonDialog1;
    FindBar findBar;
    ViewerStatus status;
    ChangeNotice notice;
    EditJournal journal;

    // What the window reports beside its controls' events.
    Event<const std::string&> userDropFile; // a file's full path; taken while File > Open is enabled
    Event<int> userZoom;                    // steps; negative ones make the text smaller

    void Form_Setup(const std::string& helpSource);
    // Shows FileToView, fitting the window to it or restoring the remembered placement.
    void DisplayFile();
    void OpenFile();
    // Restores the placement, or gives the window its default size when there is none or it is to be ignored.
    void LargeFileView(bool ignorePlacement, const std::string& placement);
    // Sizes the text box to the form; a minimized form first gets `restoreState`.
    void SetTextRTF(WindowState restoreState);
    void SetFormCaption();
    void SetMenuOrButtons(bool open, bool edit, bool print);
    void SetEdit(bool edit);
    void KeyResponse(Control& control, int keyCode);
    // Overwrites and removes the file.
    void WipeViewFile(const std::string& file);
    // Opens FileToView in the external editor, waits for its end and shows the file as the editor left it.
    void EditFile();
    // Asks whether to save the text before it is lost. False when the user answered Yes and then would rather
    // not have the file written after all; the command that asked ends there.
    bool SaveChanges();
    void SaveTheFile();
    void SaveAs();
    // Prints the file, as it is saved, or what is selected of the text, after asking where to. Rich text is
    // not printed.
    void PrintFile();
    void PrinterSetupAndGo();
    // Pages of the text, and lines of a page, with the printer and its font as they are now.
    void PageDetails(
        std::size_t& pageCount, std::size_t& linesPerPage, double topMargin, double bottomMarginHeight);
    // False when the user has cancelled. Otherwise the chosen printer is the current one.
    bool SelectPrinterSetProperties(PrintDialog& dialog);
    void PrintText();
    // Shows the pages of the file as the current printer would print them; the user may go on to PrintFile().
    void PrintPreview();
    // Prints the whole file into a PDF file that the user names.
    void ExportPdf();

    // Reads the file again, as it is now.
    void ReloadFile();
    void GoToLine();
    // Takes the bytes of the text as another encoding's.
    void ChangeEncoding(const std::string& encoding);

    bool isModified() const { return modified_; }
    bool isEditAllowed() const { return editAllowed_; }

private:
    enum class FileFormat : std::int16_t { RichText = 0, PlainText = 1 };

    // By the file's extension.
    static FileFormat formatOf(std::string_view file);

    void connectMenus();
    void connectButtons();
    void connectWindow();
    void connectText();
    void connectTools();
    void setUpMode();
    // What a text that is shown does to the window: fits it to the text, or nothing.
    enum class Fit { Window, Nothing };
    // Reads FileToView into the text box and answers True, or says that it cannot be read.
    bool showFile(Fit fit = Fit::Window);
    void loadPlain(Fit fit);
    void loadRich(Fit fit);
    void enableOwnCommands();
    void showNothing();
    // Notes this state of the file as the one shown, and watches the file from now on.
    void followFile(const std::optional<FileStamp>& state);
    void openPath(const std::string& file);
    // Offers what a process that was ended has left unsaved of the shown file.
    void offerUnsaved();
    void fitWindowToText(const text::TextDocument& document);
    void windowResized();
    void wrapLines();
    void storePlacement();
    void windowUnloaded();
    void zoomTo(double zoom);

    // SaveChanges() where there is something to save and it may be. False ends the command that asked.
    bool settleChanges();
    void noteNothingToSave();
    void runEditor();
    // Writes the text to the file; asks for a name where there is none, and before what another program has
    // written is lost. False when the user said no.
    bool saveText(const std::string& file);
    bool confirmOverwrite(const std::string& file);
    bool confirmRichLoss();
    // The file of a rich text: as it was read until the text is edited.
    std::string richFile() const;
    // False when the user would rather not write in another encoding what the text's own cannot hold.
    bool writeText(const std::string& file);
    bool writePlain(const std::string& file);
    void textIsThatOf(const std::string& file);
    void rescueText();
    // Nothing when the user cancelled.
    std::optional<std::string> askSaveName();
    bool confirm(const std::string& question, Icon icon = Icon::Question);
    std::string readPlacementSetting();
    // Say so when it is not, or when there is none.
    bool isPrintable();
    Printer* printerOrMessage();
    // What the dialog proposes.
    PrintDialog dialogFor(Printer& printer, bool wide);
    // What the file, as it is, becomes on the printer; what is set on the printer stays.
    PrintEstimate estimate(Printer& printer, const PrinterDevice& device, const PageSettings& page,
        const text::TextDocument& file);
    static void setChosenPage(Printer& printer, PageSettings chosen);
    text::TextDocument textToPrint(bool selection);
    // Whether the user lets the paper's edge cut that off.
    bool mayCutOff(const std::string& what);
    void printAsChosen(Printer& printer, const PrintDialog& chosen);
    // True when the user wants to print.
    bool previewOn(Printer& printer);
    // What is printed is the file, not what the viewer holds of it.
    text::TextDocument fileAsItIs();
    PrintedReport reportOf(const text::TextDocument& document, PageOrientation orientation);
    WindowState viewState() const;

    FileFormat fileFormat_ = FileFormat::PlainText;
    bool editAllowed_ = false;
    bool modified_ = false; // what the rules of saving go by: also after the file was shown again
    bool edited_ = false;   // the text is not that of the file
    bool wrapChosen_ = false;
    bool editSessionActive_ = false;
    bool rememberPlacement_ = false;
    bool setupDone_ = false;
    bool resizing_ = false;
    std::string shownFile_;   // whose text the text box holds
    std::string richBytes_;   // a rich text's file, as read or saved
    bool richIsWhole_ = true; // and whether the text box holds all of it
    std::string savedPlacement_;
    WindowState savedWindowState_ = WindowState::Normal;
    std::unique_ptr<FileProcedures> fileProcs_;
    std::unique_ptr<GeneralProcedures> genProcs_; // the form's own, for the settings
};

} // namespace genutil
