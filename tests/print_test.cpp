#include "fileview/frm_printing.h"
#include "support/printing.h"

#include <gmock/gmock.h>

using namespace genutil;
using fake::numbered;
using fake::Printing;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

// 100 columns fit the printable width less the left margin in 9.4 points only of a landscape sheet.
TEST_F(Printing, TakesSheetFontAndMarginsFromTheNameAndShrinksTheFontUntilTheWidestLineFits) {
    struct Case {
        const char* name;
        std::size_t columns;
        bool landscape;
        double size;
    };
    const double portraitRoom = 11906 - 480 - 587, landscapeRoom = 16838 - 480 - 311;
    const Case cases[] = {
        {"job.log", 10, false, 9.6},
        {"NET.SUM", 10, true, 9.4},
        {"net.sum", 10, true, 9.4},
        {"job.&01", 10, true, 9.4},
        {"summary.log", 10, false, 9.6},
        {"job.log", std::size_t(portraitRoom / 115.2), false, 9.6},
        {"job.log", std::size_t(portraitRoom / 115.2) + 1, false, 9.4},
        {"NET.SUM", std::size_t(landscapeRoom / 112.8) + 1, true, 9.2},
        {"job.log", std::size_t(portraitRoom / 60), false, 5},
        {"job.log", std::size_t(portraitRoom / 60) + 1, false, 5},
        {"job.log", 500, false, 5},
    };
    std::size_t cutOff = 0;
    for (const Case& c : cases) {
        print(c.name, "short\n" + std::string(c.columns - 1, 'x') + "\xC3\xA9\n");
        ASSERT_EQ(printer.pages.size(), 1u) << c.name;
        const auto& [landscape, lines] = printer.pages.front();
        const auto& body = lines.back();
        EXPECT_EQ(landscape, c.landscape) << c.name;
        EXPECT_EQ(body.font, (Font{"Courier New", c.size, true})) << c.name << c.columns;
        EXPECT_EQ(body.text.size(), c.columns + 1) << "a line that is still too wide is left as it is";
        EXPECT_EQ(lines[0].x, c.landscape ? 551 - 240 : 827 - 240);
        EXPECT_EQ(lines[0].y, c.landscape ? 827 - 240 : 276 - 240);
        EXPECT_EQ(lines[1].x, lines[0].x);
        EXPECT_EQ(lines[1].y, lines[0].y + 5 * 24 + c.size * 24) << "header, then a blank line";
        cutOff += double(c.columns) > portraitRoom / 60 ? 1 : 0;
        EXPECT_EQ(desktop.messages.size(), cutOff) << "the user is asked";
    }
    EXPECT_THAT(desktop.messages.at(0).text, HasSubstr("more than 180 characters are cut off"));
    desktop.answers = {Answer::No};
    print("job.log", std::string(500, 'x'));
    EXPECT_TRUE(printer.pages.empty()) << "rather not than without the end of the line";
    for (const double twips : {0.0, 0.9, 1.0, 300.0, 1500.0}) {
        printer.offsetPixels = twips / 15;
        print("job.log", "a\n");
        const auto& header = printer.pages.front().lines.front();
        EXPECT_EQ(header.x, twips >= 1 && twips < 827 ? 827 - twips : 827) << twips;
        EXPECT_EQ(header.y, twips == 1 ? 275 : 276)
            << twips << ": one that takes all of the margin leaves it";
    }
}

TEST_F(Printing, HeadsEveryPageWithProgramFileAndDates) {
    print("Dürr.log", numbered(1, 200));
    ASSERT_EQ(printer.pages.size(), 3u);
    for (const auto& page : printer.pages) {
        EXPECT_EQ(page.lines[0].text,
            "Kestal v8.2  -  /JOBS/DÜRR.LOG : 30 Dec 1899  00:00  -  Date printed : "
            "Tuesday, 9 Dec 2025  09:00");
        EXPECT_EQ(page.lines[0].font, (Font{"Courier New", 5, false}));
        for (const auto& line : page.lines)
            EXPECT_LE(line.y + line.font.size * 24, printer.scaleHeight() - 276) << line.text;
    }
    EXPECT_EQ(printer.ended, 1);
    EXPECT_EQ(printer.cancelled, 0);

    // Of a long path nothing is lost: it goes on below, and the report begins further down where it must.
    const std::size_t usual = printer.pages[0].lines.size();
    for (const std::size_t length : {150u, 3000u}) {
        print(std::string(length, 'p') + ".log", numbered(1, 200));
        std::string header;
        double below = 0;
        std::size_t count = 0;
        for (const auto& line : printer.pages[0].lines)
            if (line.font.size == 5) {
                header += line.text;
                below = line.y + line.font.size * 24;
                EXPECT_LE(line.x + double(line.text.size()) * 12 * 5, printer.scaleWidth()) << line.text;
                ++count;
            }
        EXPECT_EQ(header, "Kestal v8.2  -  /JOBS/" + std::string(length, 'P') +
                              ".LOG : 30 Dec 1899  00:00  -  Date printed : Tuesday, 9 Dec 2025  09:00");
        EXPECT_GE(printer.pages[0].lines[count].y, below);
        EXPECT_EQ(printer.pages[0].lines.size() - count == usual - 1, length == 150) << count;
    }
}

TEST_F(Printing, PrintsRangesOfTheSheetsOfTheWholeReport) {
    const std::string report = numbered(1, 330);
    print("a.log", report);
    const auto whole = printer.bodies();
    ASSERT_EQ(whole.size(), 5u);
    const auto maximum = desktop.printDialogs.back().maxPage;
    using Pages = std::vector<std::vector<std::string>>;
    const auto part = [&](std::size_t from, std::size_t to) {
        return Pages(whole.begin() + std::ptrdiff_t(from - 1), whole.begin() + std::ptrdiff_t(to));
    };
    struct Case {
        int from, to;
        Pages printed;
    };
    const Case cases[] = {
        {2, 3, part(2, 3)},
        {3, 2, part(2, 3)},
        {0, 1, part(1, 1)},
        {3, maximum, part(3, 5)},
        {2, 99, part(2, 5)},
        {6, 7, {}},
    };
    for (const Case& c : cases) {
        askForPages(c.from, c.to);
        desktop.messages.clear();
        const int ended = printer.ended;
        print("a.log", report);
        EXPECT_EQ(printer.bodies(), c.printed) << c.from << " to " << c.to;
        EXPECT_EQ(printer.ended - ended, c.printed.empty() ? 0 : 1);
        EXPECT_EQ(desktop.messages.size(), c.printed.empty() ? 1u : 0u);
    }
    EXPECT_EQ(desktop.messages.front().text, "Nothing is printed: page 6 is beyond the last page, 5.");
}

TEST_F(Printing, TheDialogKnowsWhatTheReportBecomesOnEveryPaper) {
    std::vector<std::size_t> told;
    std::string cut;
    desktop.onPrint = [&](PrintDialog& dialog) {
        const Font font = printer.font();
        for (const auto orientation : {PageOrientation::Portrait, PageOrientation::Landscape}) {
            dialog.page.orientation = orientation;
            const auto estimate = dialog.estimate({"Plotter", "", ""}, dialog.page);
            told.push_back(estimate->pageCount);
            cut = estimate->cutOff;
        }
        EXPECT_EQ(printer.device().name, "Laser") << "what is set stays";
        EXPECT_EQ(printer.page().orientation, PageOrientation::Portrait);
        EXPECT_EQ(printer.font(), font);
        dialog.page.orientation = PageOrientation(2 - told.size() / 2 % 2);
        return true;
    };
    for (int i = 0; i < 2; ++i) {
        print("a.log", numbered(1, 330));
        EXPECT_EQ(printer.pages.size(), told[std::size_t(3 * i)]) << "portrait, then landscape";
    }
    EXPECT_NE(told[0], told[1]);
    EXPECT_EQ(cut, "");
    print("a.log", std::string(500, 'x'));
    EXPECT_THAT(cut, HasSubstr("cut off"));
    desktop.onPrint = [&](PrintDialog& dialog) {
        files.files.erase("/jobs/a.log");
        EXPECT_FALSE(dialog.estimate(printer.device(), dialog.page));
        return false;
    };
    print("a.log", "one");
}

TEST_F(Printing, PrintsWholeCopiesInTheSameFontAndLeavesNoCopiesToThePrinter) {
    desktop.onPrint = [](PrintDialog& dialog) {
        dialog.page.copies = 2;
        return true;
    };
    print("a.log", numbered(1, 100) + std::string(110, 'x'));
    ASSERT_EQ(printer.pages.size(), 4u);
    const auto bodies = printer.bodies();
    for (int i : {0, 1}) {
        EXPECT_EQ(bodies[std::size_t(i)], bodies[std::size_t(i) + 2]);
        EXPECT_EQ(printer.pages[std::size_t(i)].lines.back().font,
            printer.pages[std::size_t(i) + 2].lines.back().font);
    }
    EXPECT_EQ(printer.page().copies, 1);
    for (const auto& [lines, duplex, sheets] : {std::tuple{30, 2, 3u}, {30, 1, 2u}, {100, 3, 4u}}) {
        desktop.onPrint = [duplex](PrintDialog& dialog) {
            dialog.page.copies = 2;
            dialog.page.duplex = std::int16_t(duplex);
            return true;
        };
        print("a.log", numbered(1, lines));
        EXPECT_EQ(printer.pages.size(), sheets) << "the second copy begins on a sheet of its own";
        EXPECT_EQ(printer.pages[1].lines.empty(), sheets == 3);
    }
}

TEST_F(Printing, PrintsTheSelectionThroughAFileOfItsOwnThatGoesAgain) {
    struct Case {
        bool taken, failing;
        std::string place;
    };
    const Case cases[] = {
        {false, false, "k_seltxt.tmp"}, {true, false, "/private/scratch"}, {false, true, "k_seltxt.tmp"}};
    for (const Case& c : cases) {
        files.log.clear();
        desktop.messages.clear();
        printer.pages.clear();
        files.files.erase("k_seltxt.tmp");
        if (c.taken)
            files.put("k_seltxt.tmp", "mine");
        printer.failAtPage = c.failing ? 1 : 0;
        frmFileView& form = view(1, file("a.log", "one\ntwo three\nfour\nfive\n"));
        form.rtbViewText.select({1, 4}, {3, 0});
        form.mnu_Print.userChoose();
        EXPECT_EQ(desktop.printDialogs.back().flags, 512 + 1);
        EXPECT_THAT(files.log, Contains("openFile " + c.place));
        EXPECT_FALSE(files.files.contains("/private/scratch"));
        EXPECT_EQ(files.bytesOf("k_seltxt.tmp"), c.taken ? "mine" : "");
        EXPECT_EQ(desktop.messages.size(), c.taken ? 1u : 0u);
        if (c.failing) {
            EXPECT_EQ(host.log.back(),
                "ReportEventError (Form) Fileview::Sub mnu_Print_Click: Device input or output error");
            EXPECT_EQ(printer.cancelled, 1);
        } else {
            EXPECT_THAT(printer.bodies(), ElementsAre(ElementsAre("three", "four")));
        }
    }
}

TEST_F(Printing, LetsNoCharacterOfTheReportLeaveItsColumnOrItsPage) {
    struct Case {
        std::string text;
        std::vector<std::vector<std::string>> pages;
    };
    const std::string full = [] {
        std::string lines;
        for (int i = 0; i < 68; ++i)
            lines += "x\n";
        return lines;
    }();
    const std::vector<std::string> fullPage(68, "x");
    const Case cases[] = {
        {"a\tb\xC3\xA9\tc\r\n\te", {{"a       b\xC3\xA9      c", "        e"}}},
        {"\x1B[2J\x07 \x7F", {{"[[][2J[G] [?]"}}},
        {"12\xE2\x80\xAE 34", {{"12[(] 34"}}},
        {"\xEF\xBB\xBF\xC2\x85\xFF", {{"[e]\xEF\xBF\xBD"}}},
        {"one\ftwo\n\f\nthree\f", {{"one"}, {"two"}, {"three"}}},
        {"\fone\f\ftwo", {{"one"}, {}, {"two"}}},
        {full + "\fy", {fullPage, {"y"}}},
        {full + "y", {fullPage, {"y"}}},
        {full, {fullPage}},
        {"", {{}}},
    };
    for (const Case& c : cases) {
        print("a.log", c.text);
        EXPECT_EQ(printer.bodies(), c.pages) << testing::PrintToString(c.text);
    }
    EXPECT_EQ(desktop.printDialogs[4].maxPage, 3) << "form feeds count";
}

TEST_F(Printing, AsksWithWhatThePrinterSaysOfItsSheetOrElseWithWhatASheetUsuallyHas) {
    using Turning = fake::RecordingPrinter::Turning;
    struct Case {
        Turning turning;
        const char* name;
        int lines, pages;
    };
    // Lines of a page: 16358 / 230.4 = 71; 16056 / 230.4, nearly 70; lying 11059.2 / 225.6, nearly 49.
    const Case cases[] = {
        {Turning::Accepted, "a.log", 70, 2},
        {Turning::Accepted, "a.log", 69, 1},
        {Turning::Ignored, "a.log", 67, 1},
        {Turning::Ignored, "a.log", 68, 2},
        {Turning::Refused, "a.sum", 46, 1},
        {Turning::Refused, "a.sum", 47, 2},
    };
    for (const Case& c : cases) {
        printer.turning = c.turning;
        print(c.name, numbered(1, c.lines));
        const PrintDialog& asked = desktop.printDialogs.back();
        EXPECT_EQ(asked.fromPage, 1);
        EXPECT_EQ(asked.minPage, 1);
        EXPECT_EQ(asked.toPage, c.pages) << c.name << c.lines;
        EXPECT_EQ(asked.maxPage, c.pages);
        EXPECT_EQ(asked.flags, 512);
        EXPECT_EQ(asked.document, std::string("/jobs/") + c.name);
        EXPECT_EQ(asked.device.name, "Laser");
        EXPECT_EQ(asked.page.paperSize, 9);
        EXPECT_EQ(asked.page.orientation, orientationFor(isWideReport(c.name)));
        EXPECT_FALSE(printer.pages.empty());
        EXPECT_TRUE(desktop.messages.empty());
    }
}

TEST_F(Printing, TakesThePrinterThatWasChosenAndItsSettings) {
    desktop.onPrint = [](PrintDialog& dialog) {
        dialog.device = {"PLOTTER", "", ""};
        dialog.page = {.orientation = PageOrientation::Landscape,
            .paperSize = 8,
            .paperBin = 4,
            .colorMode = 2,
            .duplex = 3,
            .quality = 600};
        return true;
    };
    print("a.log", "text\n");
    EXPECT_EQ(printer.device().name, "Plotter");
    EXPECT_EQ(printer.page(), (PageSettings{PageOrientation::Landscape, 8, 4, 2, 3, 600, 1}));
    EXPECT_EQ(printer.pages.front().lines.front().x, 551 - 240) << "the margins of the sheet as it lies";
    print("a.log", "text\n");
    EXPECT_EQ(desktop.printDialogs.back().device.name, "Plotter");
    desktop.onPrint = [](PrintDialog& dialog) {
        dialog.device.name = "Gone";
        return true;
    };
    print("a.log", "text\n");
    EXPECT_THAT(host.log, Contains(HasSubstr("The printer 'Gone' is not installed any more")));
    EXPECT_TRUE(printer.pages.empty());
}

TEST_F(Printing, PrintsNothingWhereThereIsNothingToPrintOrNothingToPrintOn) {
    struct Case {
        const char* what;
        std::function<void()> act;
        std::vector<std::string> messages;
    };
    const Case cases[] = {
        {"no file", [&] { view(24, "").PrintFile(); }, {"Select and display file first !!"}},
        {"no printer",
            [&] {
                desktop.thePrinter = nullptr;
                print("a.log", "text");
                desktop.thePrinter = &printer;
            },
            {"No printer available !!"}},
        {"rich", [&] { print("a.rtf", "{\\rtf1 text}"); }, {"Rich text is not printed."}},
        {"vanished",
            [&] {
                desktop.onPrint = [&](PrintDialog&) { return files.files.erase("/jobs/gone.log") == 1; };
                print("gone.log", "text");
                EXPECT_THAT(host.log, Contains(HasSubstr("gone.log")));
            },
            {}},
        {"dialog cancelled",
            [&] {
                desktop.onPrint = nullptr;
                print("a.log", "text");
            },
            {}},
    };
    for (const Case& c : cases) {
        desktop.messages.clear();
        c.act();
        std::vector<std::string> messages;
        for (const Message& message : desktop.messages)
            messages.push_back(message.text);
        EXPECT_EQ(messages, c.messages) << c.what;
        EXPECT_TRUE(printer.pages.empty()) << c.what;
        EXPECT_EQ(desktop.pointer(), Pointer::Default);
    }
}

TEST_F(Printing, ExportsTheWholeFileWithoutAskingForAPrinterAndNeverOverItself) {
    std::vector<std::string> made;
    desktop.makePdfPrinter = [&](const std::string& path) {
        made.push_back(path);
        return std::make_unique<fake::RecordingPrinter>();
    };
    frmFileView& form = view(1, file("net.sum", "text\n"));
    desktop.chosenFiles = {"/jobs/net.pdf", "", "/jobs/net.sum"};
    for (int i = 0; i < 3; ++i)
        form.mnu_ExportPdf.userChoose();
    EXPECT_THAT(made, ElementsAre("/jobs/net.pdf"));
    EXPECT_THAT(host.log, Contains(HasSubstr("'/jobs/net.sum' is the report itself")));
    EXPECT_TRUE(desktop.printDialogs.empty());
}

TEST_F(Printing, ShowsHowFarALongRunIsAndStopsIt) {
    const auto form = std::make_shared<frmPrinting>(component, "/jobs/a.log");
    EXPECT_TRUE(form->goesOn(0, 9));
    EXPECT_TRUE(desktop.openForms.empty()) << "a short run shows nothing";
    form->patience = form->turn = {};
    EXPECT_TRUE(form->goesOn(4, 10));
    EXPECT_EQ(form->lblPage.caption.get(), "Page 5 of 10");
    EXPECT_EQ(form->gauPages.floodPercent, 40);
    EXPECT_FALSE(form->unload(UnloadReason::CloseBox));
    EXPECT_FALSE(form->goesOn(5, 10)) << "its close box cancels";
    form->end();
    EXPECT_TRUE(desktop.openForms.empty());

    fake::RecordingPrinter recording;
    const auto document = text::TextDocument::fromBytes(numbered(1, 330));
    const ReportPages pages(
        recording, {.lines = allLines(document), .header = "h", .font = reportFont(false)});
    const auto outcome =
        printReport(recording, pages, {}, [](std::size_t done, std::size_t) { return done < 2; });
    EXPECT_EQ(outcome.end, PrintOutcome::End::Cancelled);
    EXPECT_EQ(recording.cancelled, 1);
    EXPECT_EQ(recording.ended, 0);
}

} // namespace
