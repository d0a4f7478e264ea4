#include "fileview/frm_file_view.h"

#include <algorithm>
#include <charconv>
#include <cmath>

// The viewer's tools beside showing and saving: finding, going to a line, zoom, wrapping, encodings, and
// files that change on disk or are dropped on the window.
namespace genutil {
namespace {

constexpr double zoomStep = 1.1;
constexpr double smallestZoom = 0.5;
constexpr double largestZoom = 5;

std::optional<std::size_t> readLineNumber(const std::string& typed, std::size_t lineCount) {
    const auto first = typed.find_first_not_of(" \t");
    const auto last = typed.find_last_not_of(" \t");
    if (first == std::string::npos)
        return std::nullopt;
    std::size_t number = 0;
    const char* const end = typed.data() + last + 1;
    const auto [after, error] = std::from_chars(typed.data() + first, end, number);
    if (error != std::errc() || after != end || number < 1 || number > lineCount)
        return std::nullopt;
    return number;
}

} // namespace

void frmFileView::connectTools() {
    using text::SearchDirection;
    const auto search = [this](SearchDirection direction) {
        return [this, direction] { findBar.search(direction); };
    };
    on(mnu_Find.click, "mnu_Find_Click", [this] { findBar.open(); });
    on(mnu_FindNext.click, "mnu_FindNext_Click", search(SearchDirection::Forward));
    on(mnu_FindPrevious.click, "mnu_FindPrevious_Click", search(SearchDirection::Backward));
    on(findBar.cmdFindNext.click, "cmdFindNext_Click", search(SearchDirection::Forward));
    on(findBar.cmdFindPrevious.click, "cmdFindPrevious_Click", search(SearchDirection::Backward));
    on(findBar.cmdFindClose.click, "cmdFindClose_Click", [this] { findBar.close(); });
    on(findBar.txtFind.change, "txtFind_Change", [this] { findBar.searchAsTyped(); });
    on(findBar.chkMatchCase.click, "chkMatchCase_Click", [this] { findBar.searchAsTyped(); });
    on(findBar.chkWholeWord.click, "chkWholeWord_Click", [this] { findBar.searchAsTyped(); });
    on(findBar.txtFind.keyDown, "txtFind_KeyDown", [this](KeyEvent& event) {
        if (event.code == key::Enter) {
            findBar.search(event.shift ? SearchDirection::Backward : SearchDirection::Forward);
            event.code = 0;
        }
    });
    on(keyDown, "Form_KeyDown", [this](KeyEvent& event) {
        if (event.code == key::Escape && findBar.pnlFind.visible) {
            findBar.close();
            event.code = 0;
        }
    });

    on(mnu_ZoomIn.click, "mnu_ZoomIn_Click", [this] { zoomTo(rtbViewText.zoom * zoomStep); });
    on(mnu_ZoomOut.click, "mnu_ZoomOut_Click", [this] { zoomTo(rtbViewText.zoom / zoomStep); });
    on(mnu_ZoomNormal.click, "mnu_ZoomNormal_Click", [this] { zoomTo(1); });
    on(userZoom, "Form_Zoom", [this](int steps) { zoomTo(rtbViewText.zoom * std::pow(zoomStep, steps)); });
    on(mnu_WrapLines.click, "mnu_WrapLines_Click", [this] {
        wrapChosen_ = !wrapChosen_;
        wrapLines();
    });

    on(status.cboEncoding.click, "cboEncoding_Click", [this] {
        if (const auto chosen = status.chosenEncoding())
            ChangeEncoding(*chosen);
    });
    on(notice.cmdReload.click, "cmdReload_Click", [this] { ReloadFile(); });
    on(notice.cmdIgnore.click, "cmdIgnore_Click", [this] { notice.ignore(); });
    on(userDropFile, "Form_DropFile", [this](const std::string& file) {
        if (mnu_OpenFile.enabled && settleChanges())
            openPath(file);
    });
}

void frmFileView::zoomTo(double zoom) {
    // Steps that meet the normal size meet it exactly.
    const double near = std::abs(zoom - 1) < (zoomStep - 1) / 2 ? 1 : zoom;
    rtbViewText.zoom = std::clamp(near, smallestZoom, largestZoom);
}

void frmFileView::GoToLine() {
    run("GoToLine", [this] {
        const std::size_t lineCount = rtbViewText.document()->lineCount();
        TextPrompt prompt{.title = "Go to Line",
            .label = "&Line, 1 to " + std::to_string(lineCount) + ":",
            .text = std::to_string(rtbViewText.caret().line + 1)};
        while (const auto typed = desktop().askText(*this, prompt)) {
            if (const auto number = readLineNumber(*typed, lineCount)) {
                const text::TextPosition start{*number - 1, 0};
                rtbViewText.select(start, start);
                rtbViewText.setFocus();
                return;
            }
            desktop().ask({.text = "\"" + *typed + "\" is not a line of this text: lines are numbered 1 to " +
                                   std::to_string(lineCount),
                .icon = Icon::Exclamation});
            prompt.text = *typed;
        }
    });
}

void frmFileView::ReloadFile() {
    run("ReloadFile", [this] {
        if (FileToView.empty())
            return;
        if (edited_ && modified_ &&
            !confirm("The changes made here will be lost.\nRead file " + FileToView + " again ?",
                Icon::Exclamation))
            return;
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        const auto state = component().files().stampOf(FileToView);
        const text::TextPosition anchor = rtbViewText.anchor();
        const text::TextPosition caret = rtbViewText.caret();
        // The window stays where the user has it, and as large.
        if (!showFile(Fit::Nothing)) {
            enableOwnCommands();
            return;
        }
        followFile(state);
        rtbViewText.select(anchor, caret);
        noteNothingToSave();
    });
}

void frmFileView::ChangeEncoding(const std::string& encoding) {
    run("ChangeEncoding", [&] {
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        const bool modified = modified_;
        const bool edited = edited_;
        const auto fileSize = status.fileSize;
        try {
            rtbViewText.setDocument(std::make_shared<text::TextDocument>(
                rtbViewText.document()->reinterpreted(encoding, component().files().codePages())));
            journal.noteEncoding(rtbViewText.document());
            // The bytes are the same.
            modified_ = modified;
            edited_ = edited;
            status.fileSize = fileSize;
            mnu_Save.enabled = modified && editAllowed_;
        } catch (const text::UnencodableCharacter& refused) {
            desktop().ask({.text = refused.what() + std::string(".\nSave the text before reading it afresh."),
                .icon = Icon::Exclamation});
        } catch (const std::invalid_argument&) {
            desktop().ask(
                {.text = "The encoding " + encoding + " is not known here", .icon = Icon::Exclamation});
        }
        status.showText();
    });
}

} // namespace genutil
