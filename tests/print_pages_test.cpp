#include "fileview/frm_print_preview.h"
#include "fileview/report_printing.h"
#include "support/printing.h"

#include <gmock/gmock.h>

#include <random>

using namespace genutil;
using fake::numbered;
using fake::Printing;
using testing::Contains;
using testing::HasSubstr;

namespace {

using Pages = std::vector<std::vector<std::string>>;

// The same rules a character at a time: a form feed begins a page unless nothing stands before it at all, and
// what it leaves empty is no line.
Pages walkedPages(const std::string& text, std::size_t linesPerPage) {
    Pages pages{{}};
    std::string piece;
    std::size_t feeds = 0;
    bool begun = false, lineHasFeeds = false;
    const auto put = [&](bool evenEmpty) {
        if (piece.empty() && !evenEmpty)
            return;
        if (begun && feeds == 0 && pages.back().size() >= linesPerPage)
            feeds = 1;
        for (; begun && feeds > 0; --feeds)
            pages.emplace_back();
        feeds = 0;
        begun = true;
        pages.back().push_back(std::exchange(piece, ""));
    };
    for (const char c : text) {
        if (c == '\f') {
            put(false);
            ++feeds;
            lineHasFeeds = true;
        } else if (c == '\n') {
            put(!std::exchange(lineHasFeeds, false));
        } else {
            piece += c;
        }
    }
    put(false);
    return pages;
}

TEST(PagedLines, FallOnTheSamePagesAsInAWalkThroughTheText) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (auto length = random() % 40; length > 0; --length)
            text += "ab\f\f\n\n\n"[random() % 7];
        const auto document = text::TextDocument::fromBytes(text);
        const std::size_t linesPerPage = 1 + random() % 4;
        const PagedLines paged(allLines(document), linesPerPage);
        Pages pages(paged.count());
        for (std::size_t page = 1; page <= paged.count(); ++page)
            paged.forEachLine(page, [&](std::string_view line) { pages[page - 1].emplace_back(line); });
        ASSERT_EQ(pages, walkedPages(text, linesPerPage))
            << testing::PrintToString(text) << " by " << linesPerPage;
    }
}

TEST(PagedLines, TheWidestLineIsOneOfThoseThatArePrintedAndEndsAtAFormFeed) {
    const auto document = text::TextDocument::fromBytes("aaaa\fbb\nccc\n");
    EXPECT_EQ(widestLine(allLines(document)), "aaaa");
    const auto plain = text::TextDocument::fromBytes("aaaa\nccc\n");
    EXPECT_EQ(widestLine({&plain, 1, 2}), "ccc");
}

TEST_F(Printing, ShowsItsPagesBeforeAnyIsPrinted) {
    const std::string report = numbered(1, 330);
    print("a.log", report);
    const Pages printed = printer.bodies();
    int dialogs = 0;
    desktop.onPrint = [&](PrintDialog&) { return ++dialogs > 1; };
    desktop.acts.push_back([&](Form& form) {
        auto& preview = dynamic_cast<frmPrintPreview&>(form);
        const auto shown = [&] {
            printer.pages.clear();
            preview.pagShown.picture(preview.pagShown.page, 100, 140);
            return printer.bodies().at(0);
        };
        EXPECT_EQ(preview.pagShown.sheetWidth, 11906);
        EXPECT_EQ(preview.lblPages.caption.get(), "of 5");
        EXPECT_EQ(shown(), printed[0]);
        EXPECT_FALSE(preview.cmdPrevious.enabled || preview.cmdFirst.enabled);
        preview.cmdLast.userPress();
        EXPECT_EQ(shown(), printed[4]);
        EXPECT_FALSE(preview.cmdNext.enabled || preview.cmdLast.enabled);
        preview.pagShown.userTurn(-2);
        preview.pagShown.userTurn(1);
        EXPECT_EQ(preview.txtPage.text.get(), "4");
        preview.pagShown.userTurn(7);
        EXPECT_EQ(preview.txtPage.text.get(), "5");
        for (const char* const typed : {"6", "0", "", "two", "2.5", "-1"}) {
            preview.txtPage.setFocus();
            preview.txtPage.userEdit(typed);
            EXPECT_EQ(preview.txtPage.backColor, BackColor::Refused) << typed;
            EXPECT_EQ(preview.pagShown.page.get(), 5u) << typed;
            preview.pagShown.setFocus();
            EXPECT_EQ(preview.txtPage.text.get(), "5");
            EXPECT_EQ(preview.txtPage.backColor, BackColor::Normal);
        }
        preview.txtPage.userEdit("2");
        EXPECT_EQ(shown(), printed[1]);
        EXPECT_TRUE(preview.cmdPrevious.enabled && preview.cmdNext.enabled);
        for (const auto& [steps, from, percent] : {std::tuple(1, 61.0, 75), std::tuple(-1, 75.0, 50),
                 std::tuple(2, 100.0, 150), std::tuple(-1, 20.0, 50), std::tuple(9, 100.0, 400)}) {
            preview.pagShown.userZoom(steps, from);
            EXPECT_EQ(preview.pagShown.zoom, percent) << from;
        }
        preview.cmdPrint.userPress();
    });
    printer.ended = 0;
    frmFileView& form = view(1, file("a.log", report));
    form.mnu_PrintPreview.userChoose();
    EXPECT_EQ(dialogs, 1) << "it goes on to the printer dialog";
    EXPECT_EQ(printer.ended, 0);
    EXPECT_EQ(desktop.pointer(), Pointer::Default);
    desktop.acts.push_back(
        [&](Form& wide) { EXPECT_EQ(dynamic_cast<frmPrintPreview&>(wide).pagShown.sheetWidth, 16838); });
    view(1, file("a.sum", report)).mnu_PrintPreview.userChoose();
    view(1, file("a.rtf", "{\\rtf1 text}")).mnu_PrintPreview.userChoose();
    EXPECT_EQ(desktop.messages.back().text, "Rich text is not printed.");
}

TEST_F(Printing, PrintsIntoAPdfFileWithoutAsking) {
    constexpr auto end = std::numeric_limits<std::size_t>::max();
    struct Case {
        const char* file;
        PdfOrder order;
        std::size_t pages;
        bool landscape;
        std::string first, last;
        const char* refusal;
    };
    const Case cases[] = {
        {"a.log", {}, 5, false, "line 1", "line 330", ""},
        {"a.sum", {}, 8, true, "line 1", "line 330", ""},
        {"a.log", {.orientation = PageOrientation::Landscape}, 8, true, "line 1", "line 330", ""},
        {"a.log", {.fromLine = 11, .toLine = 20}, 1, false, "line 11", "line 20", ""},
        {"a.log", {.fromLine = 330, .toLine = end}, 1, false, "line 330", "line 330", ""},
        {"a.log", {.fromLine = 20, .toLine = 11}, 1, false, "line 11", "line 20", ""},
        {"a.log", {.fromLine = 331, .toLine = 400}, 0, false, "", "",
            "Nothing is printed: line 331 is beyond the last line, 330"},
        {"a.log", {.fromLine = 101, .range = {.fromPage = 2, .toPage = 2}}, 1, false, "line 169", "line 236",
            ""},
        {"a.log", {.range = {.fromPage = 5, .copies = 3}}, 3, false, "line 273", "line 330", ""},
        {"a.log", {.range = {.fromPage = 6}}, 0, false, "", "",
            "Nothing is printed: page 6 is beyond the last page, 5"},
        {"a.rtf", {}, 0, false, "", "", "'/jobs/a.rtf': Rich text is not printed."},
        {"a.log", {.pdfFile = "/jobs/a.log"}, 0, false, "", "", "'/jobs/a.log' is the report itself"},
        {"none.log", {}, 0, false, "", "", "Cannot find"},
    };
    ReportPrinting printing(component);
    for (const Case& c : cases) {
        std::vector<fake::RecordingPrinter::Page> pages;
        PdfOrder order = c.order;
        order.file = std::string("/jobs/") + c.file;
        if (order.pdfFile.empty())
            order.pdfFile = "/jobs/out.pdf";
        desktop.makePdfPrinter = [&](const std::string& path) {
            EXPECT_EQ(path, "/jobs/out.pdf");
            auto made = std::make_unique<fake::RecordingPrinter>();
            made->kept = &pages;
            return made;
        };
        if (std::string(c.file) != "none.log")
            file(c.file, numbered(1, 330));
        host.log.clear();
        if (*c.refusal == 0) {
            EXPECT_EQ(printing.PrintToPdf(order, prog).pages, c.pages);
        } else {
            EXPECT_THROW(printing.PrintToPdf(order, prog), Error) << c.refusal;
            EXPECT_THAT(host.log, Contains(HasSubstr(c.refusal)));
        }
        ASSERT_EQ(pages.size(), c.pages) << c.file << c.first;
        if (pages.empty())
            continue;
        EXPECT_EQ(pages.front().landscape, c.landscape);
        EXPECT_EQ(pages.front().lines.at(1).text, c.first);
        EXPECT_EQ(pages.back().lines.back().text, c.last);
    }
    EXPECT_TRUE(desktop.printDialogs.empty() && desktop.messages.empty());
}

} // namespace
