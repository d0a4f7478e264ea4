#include "browser/frm_internal_browser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace genutil {
namespace {

// What the page is narrower and shorter than the window: the nominal frame, and the strip below the page.
constexpr double besidePage = 80;
constexpr double belowPage = 400;
// The page's height while the window is being set up.
constexpr double belowPageAtFirst = 300;

constexpr double designWidth = 9600, designHeight = 7200;
constexpr double controlHeight = 345;
constexpr double margin = 120, gap = 90;
constexpr double buttonWidth = 1215, beforeFrame = 300; // the Close button and its distance from the right
constexpr double findLabelWidth = 420, findWidth = 2400, findButtonWidth = 960;

// On a screen of at most this many pixels in either direction the window is maximized.
constexpr double smallWidth = 800, smallHeight = 600;

// From half to three times the usual size.
constexpr std::array zoomFactors{0.5, 0.67, 0.8, 0.9, 1.0, 1.1, 1.25, 1.5, 1.75, 2.0, 2.5, 3.0};
constexpr int normalZoom = 4;
static_assert(zoomFactors[normalZoom] == 1.0);

double wholePixels(double twips, double twipsPerPixel) {
    return std::floor(twips / twipsPerPixel);
}

void place(Control& control, double left, double top, double width) {
    control.left = left;
    control.top = top;
    control.width = std::max(0.0, width);
    control.height = controlHeight;
}

} // namespace

frmInternal_Browser::frmInternal_Browser(Component& owner)
    : DialogForm(owner, "frmInternal_Browser", "InternalBrowser", "Kestal History", {.width = besidePage}),
      webHistory_viewer(*this, "webHistory_viewer"), lblFind(*this, "lblFind", "Fi&nd:"),
      txtFind(*this, "txtFind"), cmdFindNext(*this, "cmdFindNext", "Ne&xt"),
      cmdFindPrevious(*this, "cmdFindPrevious", "Previo&us"), lblStatus(*this, "lblStatus", ""),
      cmdClose(*this, "cmdClose", "Close"), mnuPage(*this, "mnuPage", "Page"),
      mnuBack(*this, "mnuBack", "&Back", &mnuPage, "Alt+Left; Back"),
      mnuForward(*this, "mnuForward", "&Forward", &mnuPage, "Alt+Right; Forward"),
      mnuReload(*this, "mnuReload", "&Reload", &mnuPage, "F5; Ctrl+R"),
      mnuBreakPage(*this, "mnuBreakPage", "-", &mnuPage),
      mnuCopy(*this, "mnuCopy", "&Copy", &mnuPage, "Ctrl+C"),
      mnuCopyLink(*this, "mnuCopyLink", "Copy &Link Address", &mnuPage),
      mnuSelectAll(*this, "mnuSelectAll", "Select &All", &mnuPage, "Ctrl+A"),
      mnuBreakText(*this, "mnuBreakText", "-", &mnuPage),
      mnuFind(*this, "mnuFind", "F&ind ...", &mnuPage, "Ctrl+F"),
      mnuFindNext(*this, "mnuFindNext", "Find &Next", &mnuPage, "F3; Ctrl+G"),
      mnuFindPrevious(*this, "mnuFindPrevious", "Find &Previous", &mnuPage, "Shift+F3; Ctrl+Shift+G"),
      mnuBreakFind(*this, "mnuBreakFind", "-", &mnuPage),
      mnuZoomIn(*this, "mnuZoomIn", "&Zoom In", &mnuPage, "Ctrl++; Ctrl+="),
      mnuZoomOut(*this, "mnuZoomOut", "Zoom &Out", &mnuPage, "Ctrl+-"),
      mnuZoomNormal(*this, "mnuZoomNormal", "Normal Si&ze", &mnuPage, "Ctrl+0"),
      mnuBreakZoom(*this, "mnuBreakZoom", "-", &mnuPage),
      mnuClose(*this, "mnuClose", "Clos&e", &mnuPage, "Ctrl+W") {
    int next = 0;
    for (Control* control : std::initializer_list<Control*>{
             &webHistory_viewer, &txtFind, &cmdFindNext, &cmdFindPrevious, &cmdClose})
        control->tabIndex = next++;
    mnuBack.enabled = false;
    mnuForward.enabled = false;
    mnuCopy.enabled = false;
    mnuCopyLink.visible = false;
    txtFind.toolTip = "Text to find";
    showFinding(false);
    width = designWidth;
    height = designHeight;
    connectPage();
    connectMenu();
    connectFinding();
}

void frmInternal_Browser::connectPage() {
    const auto layOutQuietly = [this] {
        try {
            layOut();
        } catch (...) {
            // Errors are dropped here: a misplaced page is better than an error report for every movement of
            // the mouse.
        }
    };
    on(resize, "Form_Resize", [this, layOutQuietly] {
        layOutQuietly();
        if (!isShown())
            cmdClose.enabled = false;
    });
    // A window takes its first size as it appears.
    changed.connect([this, layOutQuietly](Aspect aspect) {
        if (aspect == Aspect::Visible && isShown())
            layOutQuietly();
    });
    on(webHistory_viewer.navigateComplete, "webHistory_viewer_NavigateComplete", [this] {
        cmdClose.enabled = true;
        say("");
    });
    on(webHistory_viewer.refused, "webHistory_viewer_Refused",
        [this](const std::string& reason) { say(reason); });
    on(webHistory_viewer.stateChanged, "webHistory_viewer_StateChange", [this](const PageState& state) {
        mnuBack.enabled = state.canGoBack;
        mnuForward.enabled = state.canGoForward;
        mnuCopy.enabled = state.hasSelection;
        mnuCopyLink.visible = state.isOnLink;
    });
    on(webHistory_viewer.menuWanted, "webHistory_viewer_ContextMenu",
        [this] { desktop().popUpMenu(mnuPage); });
}

void frmInternal_Browser::connectMenu() {
    const auto close = [this] { unload(); };
    on(cmdClose.click, "cmdClose_Click", close);
    on(mnuClose.click, "cmdClose_Click", close);
    on(queryUnload, "cmdClose_Click", [close](bool&, UnloadReason reason) {
        if (reason != UnloadReason::Code)
            close();
    });
    for (const auto& [item, command] :
        {std::pair(&mnuBack, PageCommand::Back), std::pair(&mnuForward, PageCommand::Forward),
            std::pair(&mnuReload, PageCommand::Reload), std::pair(&mnuCopy, PageCommand::Copy),
            std::pair(&mnuCopyLink, PageCommand::CopyLink), std::pair(&mnuSelectAll, PageCommand::SelectAll)})
        on(item->click, item->name() + "_Click", [this, command] { webHistory_viewer.commanded(command); });
    for (const auto& [item, steps] :
        {std::pair(&mnuZoomIn, 1), std::pair(&mnuZoomOut, -1), std::pair(&mnuZoomNormal, 0)})
        on(item->click, item->name() + "_Click", [this, steps] { zoom(steps); });
    on(webHistory_viewer.zoomWanted, "webHistory_viewer_MouseWheel", [this](int steps) { zoom(steps); });
}

void frmInternal_Browser::connectFinding() {
    const auto findOn = [this](auto& control, bool backwards) {
        on(control.click, control.name() + "_Click", [this, backwards] { find(backwards); });
    };
    findOn(mnuFindNext, false);
    findOn(cmdFindNext, false);
    findOn(mnuFindPrevious, true);
    findOn(cmdFindPrevious, true);
    on(mnuFind.click, "mnuFind_Click", [this] { showFinding(true); });
    on(txtFind.change, "txtFind_Change", [this] {
        say("");
        webHistory_viewer.searching(txtFind.text, false);
    });
    on(txtFind.keyDown, "txtFind_KeyDown", [this](KeyEvent& event) {
        if (event.code == key::Enter)
            find(std::exchange(event, {}).shift);
    });
    on(webHistory_viewer.found, "webHistory_viewer_Found", [this](int place, int count) {
        if (txtFind.visible && !txtFind.text.get().empty())
            say(count > 0 ? std::to_string(place) + " of " + std::to_string(count) : "Not found");
    });
    // Escape closes the find field if it is open, otherwise the window.
    keyPreview = true;
    on(keyDown, "Form_KeyDown", [this](KeyEvent& event) {
        if (event.code != key::Escape)
            return;
        event.code = 0;
        if (txtFind.visible)
            showFinding(false);
        else
            unload();
    });
}

void frmInternal_Browser::Form_Setup(const std::string& page) {
    run("Form_Setup", [&] {
        HTMLpath = page;
        webHistory_viewer.navigate(HTMLpath);
        const Screen screen = desktop().screen();
        if (wholePixels(screen.width, screen.twipsPerPixel) <= smallWidth ||
            wholePixels(screen.height, screen.twipsPerPixel) <= smallHeight) {
            windowState = WindowState::Maximized;
        } else {
            width = screen.width - screen.width / 6;
            height = screen.height - screen.height / 6;
            windowState = WindowState::Normal;
        }
        webHistory_viewer.height = height - belowPageAtFirst;
        show(false);
    });
}

void frmInternal_Browser::layOut() {
    webHistory_viewer.left = 0;
    webHistory_viewer.top = 0;
    webHistory_viewer.width = std::max(0.0, width - besidePage);
    webHistory_viewer.height = std::max(0.0, height - belowPage);

    const double stripTop = height - belowPage + (belowPage - controlHeight) / 2;
    const double right = width - beforeFrame - buttonWidth;
    place(cmdClose, right, stripTop, buttonWidth);
    double from = margin;
    const auto next = [&](Control& control, double taken) {
        place(control, from, stripTop, std::min(taken, right - gap - from));
        from += taken + gap;
    };
    if (txtFind.visible) {
        next(lblFind, findLabelWidth);
        next(txtFind, findWidth);
        next(cmdFindNext, findButtonWidth);
        next(cmdFindPrevious, findButtonWidth);
    }
    next(lblStatus, right);
}

// The strip may be too narrow for it.
void frmInternal_Browser::say(const std::string& text) {
    lblStatus.caption = text;
    lblStatus.toolTip = text;
}

void frmInternal_Browser::zoom(int steps) {
    const int wanted = steps == 0 ? normalZoom : normalZoom + zoomStep_ + steps;
    const int kept = std::clamp(wanted, 0, int(zoomFactors.size()) - 1);
    zoomStep_ = kept - normalZoom;
    webHistory_viewer.zoom = zoomFactors[std::size_t(kept)];
}

void frmInternal_Browser::showFinding(bool shown) {
    for (Control* control :
        std::initializer_list<Control*>{&lblFind, &txtFind, &cmdFindNext, &cmdFindPrevious})
        control->visible = shown;
    say("");
    layOut();
    if (shown) {
        txtFind.setFocus();
        txtFind.selectAll();
    } else if (isShown()) {
        webHistory_viewer.searching("", false);
        webHistory_viewer.setFocus();
    }
}

void frmInternal_Browser::find(bool backwards) {
    if (!txtFind.visible || txtFind.text.get().empty())
        showFinding(true);
    else
        webHistory_viewer.searching(txtFind.text, backwards);
}

} // namespace genutil
