#include "platform/qt/print/print_ink.h"

#include "fileview/print_lines.h"
#include "platform/qt/fonts.h"
#include "support/file_folder.h"
#include "text/character_width.h"

#include <gmock/gmock.h>

#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>

using namespace genutil;

namespace {

constexpr int resolution = 1200;
const Font reportLike{.name = "Courier New", .size = 9, .bold = true};

// Every kind of character that is put on paper in a way of its own.
std::vector<std::string> pieces() {
    std::string marks = "a", stacks;
    for (int i = 0; i < 100'000; ++i)
        marks += "\u0301";
    for (int i = 0; i < 8; ++i)
        stacks += "o\u0302\u0316\u0301\u0302\u0303";
    return {"plain  text", "tab\there", "Höhe 3° ±½ µ€", "東京", "ｱｲ", "한국", "ＡＢ", "Ấ①ﷺ", "𝔸𝕓", "😀🚀",
        "👨‍👩‍👧", "🇩🇪", "q\u0301", "\u0301", "\u05B8", "┌─┬█▓", "\uFFFD", "\xFF\xFE",
        "\x1B[2J\x07", "\u202E\u200B", "שלום עולם", "مرحبا بالعالم", "नमस्ते", "สวัสดี", "\uE000", marks, stacks};
}

TEST(PrintInkOnPaper, KeepsEveryCharacterOnTheColumnsThatTheViewerCounts) {
    const fake::FileFolder folder;
    const QString file = QString::fromStdString(folder / "lines.pdf");
    std::vector<double> wanted;
    {
        QPdfWriter writer(file);
        writer.setResolution(resolution);
        writer.setPageMargins({});
        PrintInk ink(toQFont(reportLike), &writer);
        QPainter painter(&writer);
        for (const std::string& piece : pieces()) {
            const QPointF at(500, 500 + ink.lineHeight() * double(wanted.size()));
            ink.paint(painter, at, writer.width(), printedLine(piece + " <END>"));
            wanted.push_back((at.x() + ink.width(piece + " ")) * 72 / resolution);
        }
    }
    QProcess process;
    process.start("pdftotext", {"-bbox", file, "-"});
    ASSERT_TRUE(process.waitForFinished());
    static const QRegularExpression word("xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\"[^>]*>&lt;END&gt;<");
    std::map<double, double> found; // by their height on the page
    for (auto match = word.globalMatch(process.readAllStandardOutput()); match.hasNext();) {
        const auto place = match.next();
        found[place.captured(2).toDouble()] = place.captured(1).toDouble();
    }
    ASSERT_EQ(found.size(), wanted.size());
    std::size_t i = 0;
    for (const auto& [height, x] : found) {
        EXPECT_NEAR(x, wanted[i], 0.1) << pieces()[i].substr(0, 20);
        ++i;
    }
}

struct Painted {
    QRect ink;
    QImage image;
};

struct PrintInkPicture : testing::Test {
    static QImage blankPaper() {
        QImage paper(1600, 420, QImage::Format_RGB32);
        paper.fill(Qt::white);
        paper.setDotsPerMeterX(qRound(resolution / 0.0254));
        paper.setDotsPerMeterY(paper.dotsPerMeterX());
        return paper;
    }
    QImage blank = blankPaper();
    const QPointF at{100, 120};
    PrintInk ink{toQFont(reportLike), &blank};

    Painted paint(const std::string& line, double right = 1500) {
        Painted painted{{}, blank};
        QPainter painter(&painted.image);
        ink.paint(painter, at, right, printedLine(line));
        for (int y = 0; y < blank.height(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(painted.image.constScanLine(y));
            for (int x = 0; x < blank.width(); ++x)
                if (qGray(row[x]) < 128)
                    painted.ink |= QRect(x, y, 1, 1);
        }
        return painted;
    }
};

TEST_F(PrintInkPicture, HasNoInkOutsideOfItsColumnsItsLineOrThePaper) {
    for (const std::string& piece : pieces()) {
        const double width = std::max(ink.width(piece), ink.width("x"));
        const QRect columns =
            QRectF(at, QSizeF(width, ink.lineHeight())).toAlignedRect().adjusted(-1, -1, 1, 1);
        const QRect found = paint(piece).ink;
        EXPECT_FALSE(found.isEmpty()) << piece.substr(0, 20);
        EXPECT_TRUE(columns.contains(found)) << piece.substr(0, 20) << ": " << found.left() << ' '
                                             << found.top() << ' ' << found.right() << ' ' << found.bottom();
        std::string endless;
        while (endless.size() < 100'000)
            endless += piece;
        EXPECT_LE(paint(endless, 1000).ink.right(), 1000) << piece.substr(0, 20);
    }
}

TEST_F(PrintInkPicture, PutsANarrowLetterOfAnotherFontInTheMiddleOfItsColumn) {
    for (const char* dots : {"\u205E", "\u205E\u0301"})
        EXPECT_NEAR(paint(dots).ink.center().x(), at.x() + ink.width("x") / 2, 4) << dots;
}

TEST_F(PrintInkPicture, PutsMarksOnTheirLettersAndReadsRightToLeftAsTheViewerDoes) {
    EXPECT_LT(paint("q\u0301").ink.top(), paint("q").ink.top() - 10);
    EXPECT_GT(paint("z\u0316").ink.bottom(), paint("z").ink.bottom() + 10);
    // The second letter is the left one: narrow, and it ends high above the line.
    EXPECT_LT(paint("אי", at.x() + 40).ink.bottom(), paint("אי").ink.bottom() - 10);
}

} // namespace
