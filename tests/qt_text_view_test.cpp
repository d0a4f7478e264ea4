#include "hostif/control.h"
#include "platform/qt/line_ruler.h"
#include "platform/qt/text_view.h"
#include "text/character_width.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QtTest/QtTest>

namespace genutil {
namespace {

TEST(LineRuler, AgreesWithTheTextsColumnsAndFindsEveryCharacterAgain) {
    QFont font;
    font.setFamilies({"Liberation Mono"});
    LineRuler ruler(font);
    ASSERT_TRUE(ruler.isFixedPitch());
    std::string mixed, accents(3, 'x');
    for (int i = 0; i < 3000; ++i) {
        mixed += i % 7 ? "word " : "\t測量e\u0301 ";
        accents += "é"; // two bytes across every mark
    }
    std::size_t number = 0;
    for (const std::string& line : {std::string("a\tb\u00E9"), std::string(20000, 'x'), mixed, accents}) {
        ++number;
        EXPECT_DOUBLE_EQ(
            ruler.xOf(line, number, line.size()), double(text::columnsOf(line)) * ruler.columnWidth());
        for (std::size_t byte = 0; byte < line.size(); byte += 997) {
            while ((line[byte] & 0xC0) == 0x80)
                ++byte;
            const double x = ruler.xOf(line, number, byte);
            EXPECT_DOUBLE_EQ(x, double(text::columnsOf(line.substr(0, byte))) * ruler.columnWidth());
            const auto spot = ruler.spotAt(line, number, x + ruler.columnWidth() / 2);
            EXPECT_LE(spot.x, x + ruler.columnWidth() / 2);
            EXPECT_LT(std::max(spot.byte, byte) - std::min(spot.byte, byte), 4u) << number << " " << byte;
        }
    }
}

class TextViewTest : public testing::Test {
protected:
    TextViewTest() {
        QFont font;
        font.setFamilies({"Liberation Mono"});
        view.setFont(font);
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.resize(400, 10 * QFontMetrics(font).height() + 5); // ten whole rows
        view.show();
    }
    void showLines(int count, const std::string& rest = "") {
        std::string whole;
        for (int i = 0; i < count; ++i)
            whole += (i ? "\n" : "") + std::to_string(i) + rest;
        view.setDocument(std::make_shared<text::TextDocument>(text::TextDocument::fromBytes(whole)));
    }
    TextView view;
};

TEST_F(TextViewTest, KeysWheelAndBarBringTheRightLines) {
    showLines(1000);
    struct Case {
        Qt::Key key;
        std::size_t first;
    };
    for (const Case& each :
        {Case{Qt::Key_Up, 0}, Case{Qt::Key_Down, 1}, Case{Qt::Key_PageDown, 10}, Case{Qt::Key_End, 990},
            Case{Qt::Key_Down, 990}, Case{Qt::Key_PageUp, 981}, Case{Qt::Key_Home, 0}}) {
        QTest::keyClick(&view, each.key);
        EXPECT_EQ(view.firstVisible().line, each.first) << each.key;
    }
    view.verticalScrollBar()->setValue(500);
    EXPECT_EQ(view.visibleText().section('\n', 0, 0), "500");
    EXPECT_EQ(view.visibleText().count('\n'), 9);
    QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &wheel);
    EXPECT_EQ(view.firstVisible().line, std::size_t(500 + QApplication::wheelScrollLines()));
    const QImage scrolled = view.grab().toImage();
    view.followKey(key::Down, false);
    EXPECT_NE(view.grab().toImage(), scrolled);
    view.followKey(key::Up, false);
    EXPECT_EQ(view.grab().toImage(), scrolled);
}

TEST_F(TextViewTest, WrappingShowsEveryWordOnceInOrderWhateverTheWidth) {
    std::string words;
    for (int i = 0; i < 4000; ++i) // longer than one piece
        words += "é" + std::to_string(i) + " ";
    const std::string whole(16384, 'y'); // two whole pieces
    view.setWrapsLines(true);
    view.setDocument(std::make_shared<text::TextDocument>(
        text::TextDocument::fromBytes("first\n\n" + words + "\n" + whole + "\nlast")));
    for (const int width : {400, 150, 20}) {
        view.resize(width, view.height());
        view.followKey(key::Home, false);
        std::vector<TextPosition> tops{view.firstVisible()};
        QString seen = view.visibleText().section('\n', 0, 0);
        for (;;) {
            view.followKey(key::Down, false);
            if (view.firstVisible() == tops.back())
                break;
            tops.push_back(view.firstVisible());
            seen += view.visibleText().section('\n', 0, 0);
        }
        const QString lastPage = view.visibleText().section('\n', 1).remove('\n');
        EXPECT_EQ(view.visibleText().count('\n'), 9) << width;
        EXPECT_TRUE((seen + lastPage).toStdString() == "first" + words + whole + "last") << width;
        for (; tops.size() > 1 && view.firstVisible() == tops.back(); tops.pop_back())
            view.followKey(key::Up, false);
        EXPECT_EQ(tops.size(), 1u) << width;
    }
}

TEST_F(TextViewTest, SelectionByKeysAndMouseIsCopiedAsText) {
    showLines(100, "\té\U0001F600x");
    QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "0\té\U0001F600x\n1\té");

    const QFontMetricsF metrics(view.font());
    const auto at = [&](int row, double column) {
        return QPoint(
            int(3 + column * metrics.horizontalAdvance('x')), int((row + 0.5) * std::ceil(metrics.height())));
    };
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(2, 8.8)); // nearer to the next boundary
    QTest::mouseMove(view.viewport(), at(3, 0.2));
    QMouseEvent drag(QEvent::MouseMove, at(3, 1.2), at(3, 1.2), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &drag);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(3, 1.2));
    EXPECT_EQ(view.selectedText(), "\U0001F600x\n3");

    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(view.selectedText().count('\n'), 99);
    showLines(1);
    EXPECT_EQ(view.selectedText(), "");
}

} // namespace
} // namespace genutil
