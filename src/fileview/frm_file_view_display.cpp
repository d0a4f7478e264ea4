#include "fileview/frm_file_view.h"

#include "fileview/placement.h"
#include "fileview/printed_file.h"
#include "fileview/window_fit.h"
#include "text/ascii.h"
#include "text/rtf.h"

#include <algorithm>
#include <array>

// What the viewer does with files: showing, opening, placing the window for them, wiping.
namespace genutil {
namespace {

constexpr const char* placementKey = "File_View_Window";

constexpr const char* openFilter = "Computation log (*.LOG)|*.log|"
                                   "Inverse report (*.INV)|*.inv|"
                                   "List Points - Export E/N/height (*.EN*)|*.en*|"
                                   "List Points - Export N/E/height (*.NE*)|*.ne*|"
                                   "List Points - Export Lat/Long/height (*.LL*)|*.ll*|"
                                   "List Points - Export XYZ (*.XYZ)|*.xyz|"
                                   "List Points - Internal (*.INT)|*.int|"
                                   "List Points - Report (*.REP)|*.rep|"
                                   "SDR data file (*.SDR)|*.SDR|"
                                   "Traverse/Network Summary(*.SUM)|*.sum|"
                                   "Extract file (*.&*)|*.&*|"
                                   "All files (*.*)|*.*|";

// Character sets whose bold faces are hard to read at the size of a report: the East Asian ones.
constexpr std::array eastAsianCharSets{128, 129, 130, 134, 136};

constexpr double defaultWidthShare = 0.7; // of the screen
constexpr double defaultHeightShare = 0.8;

// With its separator; "" for a name without a folder.
std::string folderOf(const std::string& file) {
    const auto separator = file.rfind('/');
    return separator == std::string::npos ? "" : file.substr(0, separator + 1);
}

} // namespace

std::string frmFileView::readPlacementSetting() {
    return genProcs_->ReadSetting(prog->get(program::SettingsFile), component().regInfo().SettingsSection(),
        placementKey, "", true, false);
}

WindowState frmFileView::viewState() const {
    // Another state than these three can only be a damaged setting of the host's.
    const std::int16_t state = prog->get(program::FileViewState);
    return state >= 0 && state <= 2 ? WindowState(state) : WindowState::Normal;
}

frmFileView::FileFormat frmFileView::formatOf(std::string_view file) {
    return isRichText(file) ? FileFormat::RichText : FileFormat::PlainText;
}

void frmFileView::DisplayFile() {
    run("DisplayFile", [this] {
        desktop().setPointer(Pointer::Default);
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        SetFormCaption();
        // The state before the reading: what is written meanwhile makes it another one.
        const auto state = component().files().stampOf(FileToView);
        if (!showFile())
            return;
        followFile(state);
        if (prog->get(program::WipeAfterView)) {
            notice.forget();
            journal.forget();
            WipeViewFile(FileToView);
            prog->put(program::WipeAfterView, false);
        }
    });
}

void frmFileView::followFile(const std::optional<FileStamp>& state) {
    status.fileSize = state ? std::optional(state->size) : std::nullopt;
    status.showText();
    // Edits that are about to be saved under another name are still those of the first file.
    if (fileFormat_ != FileFormat::PlainText || !editAllowed_)
        journal.forget();
    else if (!edited_)
        journal.follow(FileToView, state, rtbViewText.document());
    notice.follow(FileToView, state, [this] {
        handle("File_Changed", [this] {
            if (!editSessionActive_)
                notice.look();
        });
    });
}

bool frmFileView::showFile(Fit fit) {
    try {
        fileFormat_ == FileFormat::RichText ? loadRich(fit) : loadPlain(fit);
    } catch (const Error&) {
        desktop().ask({.text = "Error - Bad filename or file does not exist !!"});
        // The text of a file that cannot be read again is all that is left of it.
        if (shownFile_ != FileToView)
            showNothing();
        return false;
    }
    shownFile_ = FileToView;
    edited_ = false;
    wrapLines();
    return true;
}

void frmFileView::showNothing() {
    notice.forget();
    journal.forget();
    shownFile_.clear();
    rtbViewText.clear();
    edited_ = false;
    noteNothingToSave();
}

void frmFileView::loadRich(Fit fit) {
    const auto source = component().files().openFile(FileToView);
    std::string bytes = text::readAll(*source);
    auto rich = std::make_shared<text::RichText>(
        text::readRtf(bytes, component().files().codePages(), &richIsWhole_));
    richBytes_ = std::move(bytes);
    if (fit == Fit::Window) {
        savedPlacement_ = readPlacementSetting();
        LargeFileView(true, savedPlacement_);
        SetTextRTF(viewState());
    }
    rtbViewText.setRichText(std::move(rich));
}

void frmFileView::loadPlain(Fit fit) {
    const auto source = component().files().openFile(FileToView);
    const auto document = std::make_shared<text::TextDocument>(
        text::TextDocument::load(*source, component().files().codePages()));
    if (fit == Fit::Window) {
        if (rememberPlacement_ && !savedPlacement_.empty())
            LargeFileView(false, savedPlacement_);
        else
            fitWindowToText(*document);
        SetTextRTF(viewState());
    }
    rtbViewText.setDocument(document);
    if (std::ranges::find(eastAsianCharSets, int(component().sysInfo().CharSet())) !=
        eastAsianCharSets.end()) {
        Font regular = rtbViewText.font;
        regular.bold = false;
        rtbViewText.font = regular;
    }
}

void frmFileView::fitWindowToText(const text::TextDocument& document) {
    if (windowState != WindowState::Normal)
        return;
    Font measuring = lblCheckLength.font;
    measuring.name = rtbViewText.font.get().name;
    lblCheckLength.font = measuring;
    const double textWidth = wantedTextWidth(desktop(), measuring, document);
    const auto fitted = fitWindow(desktop().screen(), {width, height}, rtbViewText.width, textWidth);
    if (!fitted)
        return;
    rtbViewText.width = fitted->textBoxWidth;
    height = fitted->window.height;
    width = fitted->window.width;
}

void frmFileView::LargeFileView(bool ignorePlacement, const std::string& placement) {
    run("LargeFileView", [&] {
        const Screen screen = desktop().screen();
        if (ignorePlacement || placement.empty()) {
            width = defaultWidthShare * screen.width;
            height = defaultHeightShare * screen.height;
            return;
        }
        // A damaged setting is reported and leaves the window as it is.
        handle("LargeFileView", [&] {
            const Placement stored = readPlacement(placement, component().strUtil(), screen);
            windowState = stored.state;
            if (stored.width == 0)
                return;
            top = stored.top;
            left = stored.left;
            height = stored.height;
            width = stored.width;
        });
    });
}

void frmFileView::storePlacement() {
    const std::string section = component().regInfo().SettingsSection();
    const std::string placement = windowState == WindowState::Maximized
                                      ? maximizedPlacement(readPlacementSetting())
                                      : normalPlacement(desktop().screen(), width, height);
    genProcs_->WriteSetting(prog->get(program::SettingsFile), section, placementKey, placement, 0);
    savedPlacement_ = placement;
}

void frmFileView::OpenFile() {
    run("OpenFile", [this] {
        if (!settleChanges())
            return;
        FileDialog dialog = commonDialog1;
        dialog.filter = openFilter;
        dialog.fileName.clear();
        if (const std::string folder = folderOf(shownFile_); !folder.empty())
            dialog.folder = folder;
        if (!desktop().showOpen(*this, dialog))
            return; // a cancelled dialog leaves the file that is shown
        commonDialog1 = dialog;
        if (!dialog.fileName.empty())
            openPath(dialog.fileName);
    });
}

void frmFileView::openPath(const std::string& file) {
    FileToView = file;
    fileFormat_ = formatOf(file);
    DisplayFile();
    noteNothingToSave();
    mnu_SaveAs.enabled = true;
    mnu_Print.enabled = true;
    enableOwnCommands();
    offerUnsaved();
}

// Saving under another name and printing stay enabled without a shown file and say why they do nothing; what
// came to the menus beside them is grey then.
void frmFileView::enableOwnCommands() {
    const bool isShown = !FileToView.empty() && shownFile_ == FileToView;
    mnu_PrintPreview.enabled = isShown && mnu_Print.enabled;
    mnu_ExportPdf.enabled = isShown && mnu_Print.enabled;
    mnu_Reload.enabled = isShown;
}

void frmFileView::WipeViewFile(const std::string& file) {
    // A file that could not be wiped does not keep the user from reading it, but the user must know.
    handle("WipeViewFile", [&] {
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        component().files().wipeFile(file);
    });
}

} // namespace genutil
