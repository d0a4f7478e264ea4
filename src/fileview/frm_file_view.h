#pragma once

#include "fileview/view_modes.h"
#include "frame/dialog_form.h"
#include "hostif/controls.h"

#include <cstdint>
#include <memory>
#include <string>

namespace genutil {

// The file viewer: shows one of the product's text outputs in a window fitted to it. Lengths are twips.
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

    MenuItem mnu_File, mnu_OpenFile, mnu_Save, mnu_SaveAs, mnu_Edit, mnu_Print, mnu_Break, mnu_Close;
    MenuItem mnu_View, mnu_Refresh;
    ReportText rtbViewText;
    Label lblCheckLength; // for measuring; never shown
    Panel pnlHelp;
    Panel pnlButtons;
    Button cmdClose, cmdSelect, cmdEdit, cmdPrint;
    FileDialog commonDialog1;

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
    // The commands on the text that belong to later versions.
    void EditFile();
    void SaveChanges();
    void SaveTheFile();
    void SaveAs();
    void PrintFile();

    bool isModified() const { return modified_; }
    bool isEditAllowed() const { return editAllowed_; }

private:
    enum class FileFormat : std::int16_t { RichText = 0, PlainText = 1 };

    void connectMenus();
    void connectButtons();
    void connectWindow();
    void setUpMode();
    void fitWindowToText(const text::TextDocument& document);
    void windowResized();
    void storePlacement();
    void windowUnloaded();
    std::string readPlacementSetting();
    WindowState viewState() const;

    FileFormat fileFormat_ = FileFormat::PlainText;
    bool editAllowed_ = false;
    bool modified_ = false;
    bool editSessionActive_ = false;
    bool rememberPlacement_ = false;
    bool setupDone_ = false;
    bool resizing_ = false;
    std::string savedPlacement_;
    WindowState savedWindowState_ = WindowState::Normal;
    std::unique_ptr<FileProcedures> fileProcs_;
    std::unique_ptr<GeneralProcedures> genProcs_; // the form's own, for the settings
};

} // namespace genutil
