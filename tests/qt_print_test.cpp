#include "fileview/report_print.h"
#include "hostif/error.h"
#include "platform/qt/print/qt_printer.h"
#include "support/file_folder.h"

#include <gmock/gmock.h>

#include <QProcess>
#include <QRegularExpression>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace genutil;
using testing::HasSubstr;
using testing::Not;

namespace {

QString output(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

struct Pdf : testing::Test {
    fake::FileFolder folder;
    const std::string path = folder / "report.pdf";

    PrintOutcome print(
        const std::string& text, PageOrientation orientation,
        const PrintProgress& goOn = [](std::size_t, std::size_t) { return true; }) {
        const auto printer = makePdfPrinter(path);
        printer->setPage({.orientation = orientation});
        const auto document = text::TextDocument::fromBytes(text);
        const ReportPages pages(*printer, {.lines = allLines(document),
                                              .header = pageHeader("8.2", "/jobs/a.log", 45365.5, 46350),
                                              .font = reportFont(false),
                                              .orientation = orientation});
        return printReport(*printer, pages, {}, goOn);
    }
};

TEST_F(Pdf, HoldsTheReportOnA4InAnEmbeddedFixedPitchFontWithItsColumns) {
    std::string report = "Point\tEasting    \xC3\xA9\xE2\x82\xAC\x1B[2J end\n";
    for (int i = 1; i < 100; ++i)
        report += "P" + std::to_string(i) + "\t" + std::to_string(1000 + i) + "\n";
    const auto outcome = print(report, PageOrientation::Landscape);
    const QString file = QString::fromStdString(path);
    const std::string info = output("pdfinfo", {file}).toStdString();
    EXPECT_THAT(info, HasSubstr("Pages:           " + std::to_string(outcome.pageCount)));
    EXPECT_THAT(info, HasSubstr("842 x 595 pts (A4)"));
    const QStringList fonts = output("pdffonts", {file}).split('\n', Qt::SkipEmptyParts).mid(2);
    ASSERT_FALSE(fonts.isEmpty());
    for (const QString& font : fonts) {
        EXPECT_TRUE(font.contains("LiberationMono")) << qPrintable(font);
        EXPECT_EQ(font.simplified().split(' ').at(4), "yes") << "not embedded: " << qPrintable(font);
    }
    const std::string text = output("pdftotext", {"-fixed", "5.76", file, "-"}).toStdString();
    EXPECT_THAT(text, HasSubstr("Point   Easting    \xC3\xA9\xE2\x82\xAC[[2J end"));
    EXPECT_THAT(text, HasSubstr("P99     1099"));
    EXPECT_EQ(QString::fromStdString(text).count("/JOBS/A.LOG"), qsizetype(outcome.pageCount));
}

TEST_F(Pdf, ReadsBackWithAHeaderOnEachPageAndEveryLineInTheSizeThatFits) {
    QStringList report{QString(110, 'x')};
    for (int i = 2; i <= 200; ++i)
        report += QString("%1 of 200").arg(i);
    const auto outcome = print(report.join('\n').toStdString(), PageOrientation::Portrait);
    ASSERT_GE(outcome.pageCount, 3u);
    const QString file = QString::fromStdString(path);
    QStringList printed;
    for (std::size_t page = 1; page <= outcome.pageCount; ++page) {
        const QString number = QString::number(page);
        QStringList lines = output("pdftotext", {"-layout", "-f", number, "-l", number, file, "-"})
                                .split(QRegularExpression("[\n\f]"), Qt::SkipEmptyParts);
        EXPECT_EQ(lines.takeFirst().simplified().toStdString(),
            "Kestal v8.2 - /JOBS/A.LOG : 14 Mar 2024 12:00 - Date printed : Tuesday, 24 Nov 2026 00:00");
        printed += lines;
    }
    EXPECT_EQ(printed, report);
    // The width tells the size: 542 points of the sheet are between its margins, and a character of this
    // font is as wide as six tenths of its size.
    static const QRegularExpression word("xMin=\"([0-9.]+)\".*xMax=\"([0-9.]+)\".*>xxx");
    const auto box = word.match(output("pdftotext", {"-bbox", file, "-"}));
    const double width = box.captured(2).toDouble() - box.captured(1).toDouble();
    EXPECT_NEAR(width / 110 / 0.6, 8.2, 0.02);
}

TEST_F(Pdf, PicturesItsSheetWithTheMarginsThatItKeepsFree) {
    const auto printer = makePdfPrinter(path);
    printer->setFont(reportFont(false));
    // Two dots a point: the margins are 24 dots, and the block fills its column.
    const PagePicture picture = printer->picture(1190, 1684, [&] { printer->printLine({"███", {}}); });
    const auto dark = [&](int x) { return (picture.pixels.at(std::size_t(34 * 1190 + x)) & 255) < 128; };
    EXPECT_FALSE(dark(22));
    EXPECT_TRUE(dark(26));
    EXPECT_TRUE(dark(24 + 3 * 11));
    EXPECT_FALSE(dark(24 + 3 * 12));
}

TEST_F(Pdf, AppearsWholeOrNotAtAll) {
    folder.make("report.pdf", "earlier");
    const std::string report(100'000, '\n');
    print(report, PageOrientation::Portrait, [](std::size_t done, std::size_t) { return done < 2; });
    EXPECT_EQ(folder.contents("report.pdf"), "earlier");
    EXPECT_EQ(folder.names().size(), 1u) << "a cancelled document leaves nothing beside";
    print("text", PageOrientation::Portrait);
    EXPECT_THAT(folder.contents("report.pdf"), testing::StartsWith("%PDF"));
    EXPECT_EQ(folder.names().size(), 1u);

    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const std::string& no :
        {folder / "missing/report.pdf", folder / "pipe", folder / "", std::string("/dev/full")})
        EXPECT_THROW(makePdfPrinter(no)->printLine({"text", {}}), Error) << no;
    // A folder that goes while the file is written, and comes back.
    std::filesystem::create_directory(folder / "stick");
    const auto printer = makePdfPrinter(folder / "stick/report.pdf");
    printer->printLine({"text", {}});
    std::filesystem::remove_all(folder / "stick");
    EXPECT_THROW(printer->endDocument(), Error);
    std::filesystem::create_directory(folder / "stick");
    printer->printLine({"text", {}});
    printer->endDocument();
    EXPECT_THAT(folder.contents("stick/report.pdf"), testing::StartsWith("%PDF"));
    std::filesystem::remove_all(folder / "stick");
    // A disk that is full.
    folder.make("report.pdf", "earlier");
    struct rlimit whole {};
    ::getrlimit(RLIMIT_FSIZE, &whole);
    const rlimit little{100'000, whole.rlim_max};
    const auto ignored = ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &little);
    std::string incompressible;
    for (unsigned i = 0, value = 1; i < 400'000; ++i, value = value * 1664525 + 1013904223)
        incompressible += i % 60 == 59 ? '\n' : char('!' + (value >> 16) % 90);
    EXPECT_THROW(print(incompressible, PageOrientation::Portrait), Error);
    ::setrlimit(RLIMIT_FSIZE, &whole);
    ::signal(SIGXFSZ, ignored);
    EXPECT_EQ(folder.contents("report.pdf"), "earlier");
    EXPECT_EQ(folder.names(), (std::set<std::string>{"pipe", "report.pdf"}));
}

} // namespace
