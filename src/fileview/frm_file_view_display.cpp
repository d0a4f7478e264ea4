#include "fileview/frm_file_view.h"

#include "fileview/placement.h"
#include "fileview/window_fit.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <system_error>

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

bool isRichText(std::string_view file) {
    constexpr std::string_view extension = ".RTF";
    return file.size() >= extension.size() &&
           text::equalsIgnoringCase(file.substr(file.size() - extension.size()), extension);
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

void frmFileView::DisplayFile() {
    run("DisplayFile", [this] {
        desktop().setPointer(Pointer::Default);
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        SetFormCaption();
        if (fileFormat_ == FileFormat::RichText)
            throw Error(errors::NotAvailableYet, "Rich-text files cannot be shown yet");

        std::shared_ptr<const text::TextDocument> document;
        try {
            document = std::make_shared<text::TextDocument>(text::TextDocument::read(FileToView));
        } catch (const std::system_error&) {
            desktop().ask({.text = "Error - Bad filename or file does not exist !!"});
            return;
        }
        if (rememberPlacement_ && !savedPlacement_.empty())
            LargeFileView(false, savedPlacement_);
        else
            fitWindowToText(*document);
        SetTextRTF(viewState());
        rtbViewText.setDocument(document);
        if (std::ranges::find(eastAsianCharSets, int(component().sysInfo().CharSet())) !=
            eastAsianCharSets.end()) {
            Font regular = rtbViewText.font;
            regular.bold = false;
            rtbViewText.font = regular;
        }
        if (prog->get(program::WipeAfterView)) {
            WipeViewFile(FileToView);
            prog->put(program::WipeAfterView, false);
        }
    });
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
            if (stored.state == WindowState::Maximized)
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
        if (modified_ && editAllowed_)
            SaveChanges();
        FileDialog dialog = commonDialog1;
        dialog.filter = openFilter;
        dialog.fileName.clear();
        if (!desktop().showOpen(*this, dialog))
            return; // a cancelled dialog leaves the file that is shown
        commonDialog1 = dialog;
        if (dialog.fileName.empty())
            return;
        if (isRichText(dialog.fileName))
            throw Error(errors::NotAvailableYet, "Rich-text files cannot be shown yet");
        FileToView = dialog.fileName;
        fileFormat_ = FileFormat::PlainText;
        DisplayFile();
        modified_ = false;
        mnu_Save.enabled = false;
        mnu_SaveAs.enabled = true;
        mnu_Print.enabled = true;
    });
}

void frmFileView::WipeViewFile(const std::string& file) {
    // A file that could not be wiped does not keep the user from reading it, but the user must know.
    handle("WipeViewFile", [&] {
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        component().files().wipeFile(file);
    });
}

void frmFileView::SaveChanges() {
    run("SaveChanges", [] { throw Error(errors::NotAvailableYet, "Saving is not available yet"); });
}

void frmFileView::SaveTheFile() {
    run("SaveTheFile", [] { throw Error(errors::NotAvailableYet, "Saving is not available yet"); });
}

void frmFileView::SaveAs() {
    run("SaveAs", [] { throw Error(errors::NotAvailableYet, "Saving is not available yet"); });
}

void frmFileView::EditFile() {
    run("EditFile", [] { throw Error(errors::NotAvailableYet, "The external editor is not available yet"); });
}

void frmFileView::PrintFile() {
    run("PrintFile", [] { throw Error(errors::NotAvailableYet, "Printing is not available yet"); });
}

} // namespace genutil
