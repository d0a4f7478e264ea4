#include "fileview/frm_print_preview.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

namespace genutil {
namespace {

constexpr WindowChrome windowChrome{.width = 120, .height = 405};
constexpr double stripHeight = 600;
constexpr double noticeHeight = 510; // two lines
constexpr double controlHeight = 345;
constexpr double margin = 120, gap = 60;
constexpr double leastWidth = 8700;

// Percent of the sheet's real size, between those that go by the window.
constexpr std::array zooms{50, 75, 100, 125, 150, 200, 300, 400};

std::vector<ListItem> zoomItems() {
    std::vector<ListItem> items{
        {"Whole page", PrintedPage::wholePage}, {"Page width", PrintedPage::pageWidth}};
    for (const int zoom : zooms)
        items.push_back({std::to_string(zoom) + " %", zoom});
    return items;
}

} // namespace

frmPrintPreview::frmPrintPreview(
    Component& owner, Printer& printer, const ReportPages& pages, const std::string& file)
    : DialogForm(owner, "frmPrintPreview", "PrintPreview", "Print preview: " + file, windowChrome),
      pagShown(*this, "pagShown", printer.sheetWidth(), printer.sheetHeight(),
          [this](std::size_t page, int pictureWidth, int pictureHeight) {
              return picture(page, pictureWidth, pictureHeight);
          }),
      cmdFirst(*this, "cmdFirst", "&First"), cmdPrevious(*this, "cmdPrevious", "P&revious"),
      txtPage(*this, "txtPage", "1"), lblPages(*this, "lblPages", "of " + std::to_string(pages.count())),
      cmdNext(*this, "cmdNext", "&Next"), cmdLast(*this, "cmdLast", "&Last"),
      lblZoom(*this, "lblZoom", "&Zoom:"), cboZoom(*this, "cboZoom"),
      cmdPrint(*this, "cmdPrint", "&Print ..."), cmdClose(*this, "cmdClose", "&Close"),
      lblCutOff(*this, "lblCutOff", pages.cutOff().empty() ? "" : pages.cutOff() + "."), printer_(printer),
      pages_(pages) {
    int next = 0;
    for (Control* control : std::initializer_list<Control*>{&pagShown, &cmdFirst, &cmdPrevious, &txtPage,
             &cmdNext, &cmdLast, &cboZoom, &cmdPrint, &cmdClose})
        control->tabIndex = next++;
    cmdClose.isCancel = true;
    txtPage.toolTip = "Page to show: a whole number from 1 to " + std::to_string(pages.count());
    cboZoom.items = zoomItems();
    cboZoom.listIndex = 0;
    connectPages();
    connectZoom();
    connectKeys();
    showPage();
}

void frmPrintPreview::connectPages() {
    const auto shown = [this] { return std::ptrdiff_t(pagShown.page.get()); };
    on(cmdFirst.click, "cmdFirst_Click", [this] { goTo(1); });
    on(cmdPrevious.click, "cmdPrevious_Click", [=, this] { goTo(shown() - 1); });
    on(cmdNext.click, "cmdNext_Click", [=, this] { goTo(shown() + 1); });
    on(cmdLast.click, "cmdLast_Click", [this] { goTo(std::ptrdiff_t(pages_.count())); });
    on(pagShown.userTurn, "pagShown_Turn", [=, this](int pages) { goTo(shown() + pages); });
    on(txtPage.change, "txtPage_Change", [this] { pageEdited(); });
    on(txtPage.gotFocus, "txtPage_GotFocus", [this] { txtPage.selectAll(); });
    // What was not a page goes with the focus.
    on(txtPage.lostFocus, "txtPage_LostFocus", [this] { showPage(); });
    on(cmdPrint.click, "cmdPrint_Click", [this] {
        PrintChosen = true;
        unload();
    });
    on(cmdClose.click, "cmdClose_Click", [this] { unload(); });
}

void frmPrintPreview::connectZoom() {
    on(cboZoom.click, "cboZoom_Click", [this] {
        if (const auto item = cboZoom.selectedItem())
            pagShown.zoom = item->code;
    });
    on(pagShown.userZoom, "pagShown_Zoom", [this](int steps, double percent) { zoomBy(steps, percent); });
    on(resize, "Form_Resize", [this] { layOut(); });
    // A window takes its first size as it appears.
    changed.connect([this](Aspect aspect) {
        if (aspect == Aspect::Visible && isShown())
            layOut();
    });
}

void frmPrintPreview::connectKeys() {
    keyPreview = true;
    on(keyDown, "Form_KeyDown", [this](KeyEvent& event) {
        const bool onPage = activeControl() == &pagShown;
        if (event.code == key::P && event.ctrl)
            cmdPrint.userPress();
        else if (event.code == key::Home && onPage)
            goTo(1);
        else if (event.code == key::End && onPage)
            goTo(std::ptrdiff_t(pages_.count()));
        else if (event.code == key::Enter && activeControl() == &txtPage)
            pagShown.setFocus();
        else
            return;
        event.code = 0;
    });
}

void frmPrintPreview::Form_Setup(int helpTopic, const std::string& programFolder) {
    run("Form_Setup", [&] {
        helpContextId = helpTopic;
        openHelpOnF1([programFolder] { return programFolder; });
        const Screen screen = desktop().screen();
        constexpr double share = 0.85;
        height = screen.height * share;
        width = std::clamp(height.get(), std::min(leastWidth, screen.width * share), screen.width * share);
        layOut();
        const PointerScope arrow(desktop(), Pointer::Default);
        show(true);
    });
}

double frmPrintPreview::leastRoom() const {
    return cmdClose.left + cmdClose.width + margin;
}

void frmPrintPreview::layOut() {
    const double room = std::max(0.0, width - windowChrome.width);
    double from = margin;
    const auto put = [&](Control& control, double taken) {
        control.left = from;
        control.top = (stripHeight - controlHeight) / 2;
        control.width = taken;
        control.height = controlHeight;
        from += taken + gap;
    };
    const double pagesWidth = 150 + 105 * double(lblPages.caption.get().size());
    for (const auto& [control, taken] : std::initializer_list<std::pair<Control*, double>>{{&cmdFirst, 660},
             {&cmdPrevious, 960}, {&txtPage, 600}, {&lblPages, pagesWidth}, {&cmdNext, 660}, {&cmdLast, 660},
             {&lblZoom, 525}, {&cboZoom, 1320}, {&cmdPrint, 960}, {&cmdClose, 780}})
        put(*control, taken);
    lblCutOff.visible = !lblCutOff.caption.get().empty();
    lblCutOff.left = margin;
    lblCutOff.top = stripHeight;
    lblCutOff.width = std::max(0.0, room - 2 * margin);
    lblCutOff.height = noticeHeight - gap;
    pagShown.left = 0;
    pagShown.top = stripHeight + (lblCutOff.visible ? noticeHeight : 0);
    pagShown.width = room;
    pagShown.height = std::max(0.0, height - windowChrome.height - pagShown.top);
}

PagePicture frmPrintPreview::picture(std::size_t page, int pictureWidth, int pictureHeight) {
    PagePicture result;
    handle("PagePicture", [&] {
        result = printer_.picture(pictureWidth, pictureHeight, [&] { pages_.print(printer_, page); });
    });
    return result;
}

void frmPrintPreview::goTo(std::ptrdiff_t page) {
    pagShown.page = std::size_t(std::clamp<std::ptrdiff_t>(page, 1, std::ptrdiff_t(pages_.count())));
    showPage();
}

void frmPrintPreview::zoomBy(int steps, double shownPercent) {
    // The next zoom that is larger, or smaller, than what is seen.
    const auto larger = std::ranges::upper_bound(zooms, shownPercent + 0.5);
    const auto smaller = std::ranges::lower_bound(zooms, shownPercent - 0.5) - 1;
    const auto first = cboZoom.items.get().size() - zooms.size();
    const auto wanted = steps > 0 ? larger - zooms.begin() + steps - 1 : smaller - zooms.begin() + steps + 1;
    cboZoom.listIndex = std::int16_t(
        std::ptrdiff_t(first) + std::clamp<std::ptrdiff_t>(wanted, 0, std::ptrdiff_t(zooms.size()) - 1));
}

void frmPrintPreview::pageEdited() {
    const auto wanted = wholeNumber(txtPage.text.get());
    const bool isPage = wanted && *wanted >= 1 && *wanted <= double(pages_.count()) &&
                        *wanted == double(std::size_t(*wanted));
    txtPage.backColor = isPage ? BackColor::Normal : BackColor::Refused;
    if (isPage)
        pagShown.page = std::size_t(*wanted);
    enableButtons();
}

void frmPrintPreview::showPage() {
    txtPage.text = std::to_string(pagShown.page);
    txtPage.backColor = BackColor::Normal;
    enableButtons();
}

void frmPrintPreview::enableButtons() {
    const std::size_t page = pagShown.page;
    for (Button* button : {&cmdFirst, &cmdPrevious})
        button->enabled = page > 1;
    for (Button* button : {&cmdNext, &cmdLast})
        button->enabled = page < pages_.count();
}

} // namespace genutil
