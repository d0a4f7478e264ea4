#include "host/automation_object.h"
#include "host/commands.h"
#include "host/help_texts.h"
#include "host/report_kinds.h"
#include "host/text_rules.h"
#include "host/tour.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

using namespace kestal;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(TextRules, NextFieldTakesFieldByField) {
    struct Case {
        const char* text;
        const char* separator;
        const char* field;
        const char* rest;
    };
    const Case cases[] = {
        {"0,1000,2000", ",", "0", "1000,2000"},
        {"last", ",", "last", ""},
        {"", ",", "", ""},
        {",second", ",", "", "second"},
        {"a, b", ", ", "a", "b"},
        {"whole", "", "whole", ""},
    };
    for (const Case& each : cases) {
        std::string text = each.text;
        EXPECT_EQ(nextField(text, each.separator), each.field);
        EXPECT_EQ(text, each.rest);
    }
}

TEST(TextRules, NumbersAreFormattedByTheirDecimalDigits) {
    struct Case {
        double value;
        const char* format;
        const char* text;
    };
    const Case cases[] = {
        {1500.4, "#######0", "1500"},
        {0, "#######0", "0"},
        {0.4, "#######0", "0"},
        {2.5, "0", "3"},
        {-2.5, "0", "-3"},
        {1.005, "0.00", "1.01"},
        {0.0005, "0.000", "0.001"},
        {-0.0004, "0.000", "0.000"},
        {9.9996, "0.000", "10.000"},
        {0.5, "#.00", ".50"},
        {1234567.5, "#,##0.0", "1,234,567.5"},
        {123, "#,##0", "123"},
        {1.5, "0.0##", "1.5"},
        {7, "000", "007"},
        {12.5, "0.00 m", "12.50 m"},
        {1e20, "0.0", "100000000000000000000.0"},
        {1e-300, "0.00", "0.00"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(formatNumber(each.value, each.format), each.text) << each.value << " as " << each.format;
    EXPECT_EQ(formatNumber(-1234567.25, "#,##0.0##", {",", "."}), "-1.234.567,25");
    for (const char* format : {"", "abc", "0.0.0", "0#x#"})
        EXPECT_THROW(formatNumber(1, format), AutomationError) << format;
    EXPECT_THROW(formatNumber(INFINITY, "0"), AutomationError);
}

TEST(TextRules, AnglesCarryRoundedSecondsOver) {
    struct Case {
        const char* degrees;
        int decimals;
        const char* kind;
        const char* text;
    };
    const Case cases[] = {
        {"-31.5", 0, "LATITUDE", "31°30'00\"S"},
        {"31.5", 0, "latitude", "31°30'00\"N"},
        {"-115.75", 0, "LONGITUDE", "115°45'00\"W"},
        {"0", 0, "LONGITUDE", "0°00'00\"E"},
        {"-0.00001", 0, "", "0°00'00\""},
        {"-12.5", 0, "", "-12°30'00\""},
        {"59.9999", 0, "", "60°00'00\""},
        {" 1.0001 ", 2, "", "1°00'00.36\""},
        {"1.5E1", 0, "", "15°00'00\""},
    };
    for (const Case& each : cases)
        EXPECT_EQ(angleText(each.degrees, each.decimals, each.kind), each.text) << each.degrees;
    for (const char* wrong : {"", "12°", "nan", "1e7", "1,5"})
        EXPECT_ANY_THROW(angleText(wrong, 0, "")) << wrong;
}

TEST(TextRules, AnEditorCommandKeepsProgramSwitchesAndFileApart) {
    struct Case {
        const char* editor;
        const char* file;
        std::vector<std::string> arguments;
    };
    const Case cases[] = {
        {"gedit --wait", "/r/a b.log", {"gedit", "--wait", "/r/a b.log"}},
        {"\"/opt/my editor/ed\" -n", "x", {"/opt/my editor/ed", "-n", "x"}},
        {"/opt/my editor/ed\x7F-n\x7F-w", "x", {"/opt/my editor/ed", "-n", "-w", "x"}},
        {"/bin/sh", "-c", {"/bin/sh", "./-c"}},
        {"ed", "q\"u\\o$(x)`y`;te", {"ed", "q\"u\\o$(x)`y`;te"}},
        {"ed", "C:\\data\\", {"ed", "C:\\data\\"}},
        {"ed", "two\nlines *.log", {"ed", "two\nlines *.log"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(splitCommandLine(editorCommand(each.editor, each.file)), each.arguments) << each.editor;
    EXPECT_THROW(editorCommand("  ", "x"), AutomationError);
    EXPECT_THROW(splitCommandLine("ed \"x"), AutomationError);
    EXPECT_THAT(splitCommandLine("  a  \"\" b\\ c "), ElementsAre("a", "", "b\\", "c"));
}

TEST(TextRules, PathsAndNamesComeApartWithoutLoss) {
    struct Case {
        const char* path;
        const char* drive;
        const char* folder;
        const char* file;
        const char* extension;
    };
    const Case cases[] = {
        {"/jobs/dam.gdb", "", "/jobs/", "dam.gdb", ".gdb"},
        {"/jobs.old/dam", "", "/jobs.old/", "dam", ""},
        {"C:\\jobs\\dam.v2.mdb", "C:", "\\jobs\\", "dam.v2.mdb", ".mdb"},
        {"dam.", "", "", "dam.", "."},
        {"/jobs/.hidden", "", "/jobs/", ".hidden", ""},
        {"", "", "", "", ""},
        {"/", "", "/", "", ""},
    };
    for (const Case& each : cases) {
        const PathParts parts = splitPath(each.path);
        EXPECT_EQ(parts.drive, each.drive);
        EXPECT_EQ(parts.folder, each.folder);
        EXPECT_EQ(parts.file, each.file);
        std::string name = each.path;
        EXPECT_EQ(splitExtension(name), each.extension);
        EXPECT_EQ(name + each.extension, each.path);
    }
    EXPECT_EQ(captionText("A & B && C"), "A && B &&&& C");
    EXPECT_EQ(transformValue(12.3456789, -5), 12.34568);
    EXPECT_EQ(transformValue(1e308, -12), 1e308);
    EXPECT_THROW(transformValue(1, 1), AutomationError);
}

TEST(TextRules, APathLosesFoldersInTheMiddleUntilItFits) {
    const std::tuple<const char*, std::size_t, const char*> cases[] = {{"/usr/lib/x/ed", 13, "/usr/lib/x/ed"},
        {"/usr/lib/long/ed", 15, "/usr/lib/.../ed"}, {"/usr/lib/long/ed", 14, "/usr/.../ed"},
        {"/usr/lib/long/ed", 10, "/.../ed"}, {"/usr/lib/long/ed", 6, ".../ed"}, {"/usr/lib/long/ed", 5, ""},
        {"editor", 5, ""}};
    for (const auto& [path, room, shorter] : cases)
        EXPECT_EQ(
            shortenedPath(path, [most = room](const auto& text) { return text.size() <= most; }), shorter);
}

TEST(HelpTexts, ParagraphsFlowAndItemsStandAlone) {
    const HelpTexts texts =
        HelpTexts::parse("# comment\r\n[1800] File viewer\r\n\r\nShows a\r\nreport.\r\n\r\n\r\n"
                         "Keys:\n- one\n  goes on\n- two\n[1801] Close\nCloses.");
    EXPECT_TRUE(texts.faults().isEmpty());
    ASSERT_TRUE(texts.find(1800));
    EXPECT_EQ(texts.find(1800)->title, "File viewer");
    EXPECT_EQ(texts.find(1800)->text, QString::fromUtf8("Shows a report.\n\nKeys:\n• one goes on\n• two"));
    EXPECT_EQ(texts.find(1801)->text, "Closes.");
    EXPECT_EQ(texts.find(1), nullptr);
}

TEST(HelpTexts, BrokenLinesAreNamedAndTheRestIsKept) {
    const HelpTexts texts =
        HelpTexts::parse("stray\n[x] No number\nlost\n[12\nlost\n[7] Seven\nkept\n[7] Again\nlost\n"
                         "[8]\n[99999999999] Large\n[9] Nine\n\xC3\n");
    EXPECT_EQ(texts.topics().size(), 2u);
    ASSERT_TRUE(texts.find(7));
    EXPECT_EQ(texts.find(7)->text, "kept");
    ASSERT_EQ(texts.faults().size(), 6);
    EXPECT_EQ(texts.faults()[0], "line 1: text must stand below a topic");
    EXPECT_THAT(texts.faults()[3].toStdString(), HasSubstr("line 8: topic 7 must not be given twice"));
    EXPECT_EQ(HelpTexts::load("/no/such/help.txt").faults().size(), 1);
}

TEST(ReportKinds, TheFileNameChoosesTheViewMode) {
    const std::pair<const char*, int> cases[] = {{"network.log", 25}, {"N.LOG", 25}, {"a.inv", 29},
        {"a.rep", 22}, {"a.en1", 22}, {"a.NE", 22}, {"a.ll3", 22}, {"a.xyz", 22}, {"History.TXT", 23},
        {"my history.txt", 1}, {"job.&01", 1}, {"a.log.bak", 1}, {"log", 1}};
    for (const auto& [name, mode] : cases)
        EXPECT_EQ(reportKindOf(name).viewMode, mode) << name;
}

TEST(CommandLine, RefusesWhatItDoesNotKnowWithExitCode2) {
    struct Case {
        std::vector<std::string> arguments;
        const char* named; // what the message must name
    };
    const Case cases[] = {
        {{"wiev"}, "'wiev'"},
        {{"view"}, "FILE"},
        {{"view", "a", "b"}, "'b'"},
        {{"view", ""}, "''"},
        {{"view", "a", "--mod", "3"}, "'--mod'"},
        {{"view", "a", "--mode"}, "--mode needs a value"},
        {{"view", "a", "--mode", "2x"}, "'2x'"},
        {{"view", "a", "--mode", "40000"}, "-32768 to 32767"},
        {{"view", "a", "--modal", "--modal"}, "twice"},
        {{"gauge", "--seconds", "0"}, "1 to 3600"},
        {{"gauge", "x"}, "'x'"},
        {{"tour"}, "--shots is needed"},
        {{"tour", "--shots", ""}, "--shots"},
        {{"--folder"}, "--folder needs a value"},
    };
    for (const Case& each : cases) {
        const CommandLine line = parseCommandLine(each.arguments);
        EXPECT_EQ(line.command, nullptr) << each.named;
        EXPECT_EQ(line.exitCode, 2) << each.named;
        EXPECT_THAT(line.message, HasSubstr(each.named));
    }
}

TEST(CommandLine, UnderstandsEveryCommand) {
    const CommandLine view = parseCommandLine({"view", "--mode", "-1", "--modal", "--", "--odd name.log"});
    ASSERT_TRUE(view.command) << view.message;
    EXPECT_EQ(view.file, "--odd name.log");
    EXPECT_EQ(view.number("--mode", 5), -1);
    EXPECT_TRUE(view.has("--modal"));
    EXPECT_EQ(parseCommandLine({"gauge"}).number("--seconds", 5), 5);
    EXPECT_TRUE(parseCommandLine({}).command) << "the main window";
    EXPECT_TRUE(parseCommandLine({"--folder", "/tmp"}).command);
    for (const auto& arguments : {std::vector<std::string>{"--help"}, {"view", "--help"}, {"--version"}}) {
        const CommandLine line = parseCommandLine(arguments);
        EXPECT_EQ(line.command, nullptr);
        EXPECT_EQ(line.exitCode, 0);
        EXPECT_FALSE(line.message.empty());
    }
}

TEST(Pictures, ABlankPictureHasNoInk) {
    QImage image(10, 10, QImage::Format_RGB32);
    image.fill(Qt::white);
    EXPECT_EQ(inkShare(image), 0);
    image.setPixel(3, 3, 0);
    EXPECT_NEAR(inkShare(image), 0.01, 1e-9);
    EXPECT_EQ(inkShare(QImage()), 0);
}
