#include "platform/qt/text/line_ruler.h"
#include "qt_text_form.h"
#include "text/character_width.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>

#include <random>

namespace genutil {
namespace {

using text::TextDocument;
using text::TextPosition;

using TextViewTest = fake::TextViewTest;

TEST(LineRuler, AgreesWithTheTextsColumnsAndFindsEveryCharacterAgainAlsoAfterEdits) {
    QFont font;
    font.setFamilies({"Liberation Mono"});
    LineRuler ruler(font);
    ASSERT_TRUE(ruler.isFixedPitch());
    std::string mixed, accents(3, 'x');
    for (int i = 0; i < 3000; ++i) {
        mixed += i % 7 ? "word " : "\t測量e\u0301 \x12";
        accents += "é"; // two bytes across every mark
    }
    std::size_t number = 0;
    for (std::string line : {std::string("a\tb\u00E9"), std::string(20000, 'x'), mixed, accents}) {
        ++number;
        for (std::size_t edit = 0; edit < 6; ++edit) {
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
            std::size_t at = line.size() * (5 - edit) / 5;
            while (at < line.size() && (line[at] & 0xC0) == 0x80)
                ++at;
            line.insert(at, "é\t");
            ruler.changed({{number, at}, {number, at}, {number, at + 3}});
        }
    }
}

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
    const auto turn = [&](Qt::KeyboardModifiers held) {
        QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, -120}, Qt::NoButton, held, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &wheel);
    };
    turn({});
    EXPECT_EQ(view.firstVisible().line, std::size_t(500 + QApplication::wheelScrollLines()));
    int zoomed = 0;
    view.zoomRequested.connect([&](int steps) { zoomed += steps; });
    turn(Qt::ControlModifier);
    EXPECT_EQ(zoomed, -1);
    const QImage scrolled = picture();
    model.sentKey(key::Down);
    EXPECT_NE(picture(), scrolled);
    model.sentKey(key::Up);
    EXPECT_EQ(picture(), scrolled);
    model.select({200, 0}, {200, 1});
    EXPECT_THAT(view.visibleText().split('\n'), testing::Contains(QString("200")));
}

TEST_F(TextViewTest, WrappingShowsEveryWordOnceInOrderWhateverTheWidth) {
    std::string words;
    for (int i = 0; i < 4000; ++i) // longer than one piece
        words += "é" + std::to_string(i) + " ";
    const std::string whole(16384, 'y'); // two whole pieces
    model.wrapsLines = true;
    showText("first\n\n" + words + "\n" + whole + "\nlast");
    for (const int width : {400, 150, 40}) {
        view.resize(width, view.height());
        model.sentKey(key::Home);
        std::vector<TextPosition> tops{view.firstVisible()};
        QString seen = view.visibleText().section('\n', 0, 0);
        for (;;) {
            model.sentKey(key::Down);
            if (view.firstVisible() == tops.back())
                break;
            tops.push_back(view.firstVisible());
            seen += view.visibleText().section('\n', 0, 0);
        }
        const QString lastPage = view.visibleText().section('\n', 1).remove('\n');
        EXPECT_EQ(view.visibleText().count('\n'), 9) << width;
        EXPECT_TRUE((seen + lastPage).toStdString() == "first" + words + whole + "last") << width;
        for (; tops.size() > 1 && view.firstVisible() == tops.back(); tops.pop_back())
            model.sentKey(key::Up);
        EXPECT_EQ(tops.size(), 1u) << width;
    }
    // Prose keeps to a column that can be read; a report takes the whole window.
    view.resize(3000, view.height());
    const qsizetype reportRow = view.visibleText().section('\n', 2, 2).size();
    model.font = Font{.name = "MS Sans Serif", .size = 9.75};
    EXPECT_LT(view.visibleText().section('\n', 2, 2).size(), 130);
    EXPECT_GT(reportRow, 300);
}

TEST_F(TextViewTest, SelectionByKeysAndMouseIsCopiedAsText) {
    showLines(100, "\té\U0001F600x");
    QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "0\té\U0001F600x\n1\té");

    const auto drag = [&](QPoint to) {
        QMouseEvent event(QEvent::MouseMove, to, to, Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(view.viewport(), &event);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to);
    };
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(2, 8.8)); // nearer to the next boundary
    drag(at(3, 1.2));
    EXPECT_EQ(model.selectedText(), "\U0001F600x\n3");
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ShiftModifier, at(2, 0));
    EXPECT_EQ(model.selectedText(), "2\té");

    showMarked("one two-three é4_x  end\nnext|");
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at(0, 15));
    EXPECT_EQ(model.selectedText(), "é4_x");
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(0, 15)); // the third
    EXPECT_EQ(model.selectedText(), "one two-three é4_x  end\n");
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(0, 15));
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at(0, 9));
    QTest::mousePress(view.viewport(), Qt::RightButton, {}, at(0, 0));
    EXPECT_EQ(model.selectedText(), "three");

    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(model.selectedText(), "one two-three é4_x  end\nnext");
    showLines(1);
    EXPECT_EQ(model.selectedText(), "");
}

TEST_F(TextViewTest, ControlAndDirectionCharactersAreSeenAndChangeNoOrder) {
    for (const bool wraps : {false, true}) {
        model.wrapsLines = wraps;
        const auto shown = [&](const std::string& line) {
            showText(line);
            return picture();
        };
        const auto from = [&](const QImage& image, int column) {
            return image.copy(int(at(0, column).x() * image.devicePixelRatio()), 0, 200, image.height());
        };
        const auto rest = [&](const QImage& image) { return from(image, 2); };
        const QImage letter = shown("1|abc 123");
        std::vector<QImage> seen{letter};
        for (const char* control :
            {"\x1B", "\x7F", "\u0085", "\u202E", "\u2067", "\u200B", "\uFEFF", "\u2028"}) {
            seen.push_back(shown("1" + std::string(control) + "abc 123"));
            EXPECT_EQ(rest(seen.back()), rest(letter)) << wraps << control;
            for (std::size_t i = 0; i + 1 < seen.size(); ++i)
                EXPECT_NE(seen[i], seen.back()) << wraps << i;
        }
        // An Arabic word leaves what stands behind it at its column.
        const auto behind = [&](const QImage& image) { return from(image, 8); };
        if (!wraps) {
            EXPECT_EQ(behind(shown("سلام    abc")), behind(shown("        abc")));
        }
    }
}

TEST_F(TextViewTest, AnEditedTextLooksLikeTheSameTextShownAfresh) {
    std::string whole;
    for (int i = 0; i < 60; ++i)
        whole += std::string(std::size_t(i * 7 % 90), char('a' + i % 26)) +
                 (i % 9 ? " é\t測 word\n" : "\x01שלום אב\n");
    whole += std::string(30'000, 'w');
    std::mt19937 random(7);
    view.clearFocus();
    for (const char* font : {"Courier New", "Arial"})
        for (const bool wraps : {false, true}) {
            model.font = Font{.name = font, .size = 10};
            model.wrapsLines = wraps;
            showText(whole);
            for (int i = 0; i < 40; ++i) {
                const TextDocument& document = *model.document();
                const auto place = [&] { return document.positionAt(random() % document.size()); };
                TextPosition a = place(), b = i % 3 ? a : place();
                if (i % 5 == 0)
                    a = b = TextPosition{document.lineCount() - 1, 9000 + random() % 9000};
                static constexpr const char* pieces[] = {"x", "é\n", "\t\n\n", "long word ", ""};
                model.replace({std::min(a, b), std::max(a, b)}, pieces[random() % std::size(pieces)]);
                model.select(place(), place());
                const QImage edited = picture();
                const TextPosition top = view.firstVisible();
                const int left = view.horizontalScrollBar()->value();
                TextView fresh;
                fresh.setFrameShape(QFrame::NoFrame);
                fresh.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
                fresh.setAttribute(Qt::WA_ShowWithoutActivating);
                fresh.setModel(&model);
                fresh.resize(view.size());
                fresh.show();
                QCoreApplication::processEvents();
                fresh.showPosition(document.end());
                fresh.showPosition(top);
                // In a proportional font the bar's range is what has been seen so far.
                fresh.horizontalScrollBar()->setMaximum(
                    std::max(left, fresh.horizontalScrollBar()->maximum()));
                fresh.horizontalScrollBar()->setValue(left);
                ASSERT_EQ(fresh.firstVisible(), top) << font << wraps << i;
                EXPECT_EQ(fresh.viewport()->grab().toImage(), edited) << font << wraps << i;
                fresh.setModel(nullptr);
            }
        }
}

TEST_F(TextViewTest, ALineOfTenMillionBytesIsEditedAtItsFarEnd) {
    for (const bool wraps : {false, true}) {
        model.wrapsLines = wraps;
        showMarked("|");
        showText(std::string(10'000'000, 'x') + " é");
        QTest::keyClick(&view, Qt::Key_End, Qt::ControlModifier);
        QElapsedTimer taken;
        taken.start();
        for (int i = 0; i < 20; ++i) {
            QTest::keyClick(&view, Qt::Key_Z);
            QTest::keyClick(&view, Qt::Key_Left);
            picture();
        }
        EXPECT_LT(taken.elapsed(), 10'000)
            << wraps; // far more for a view that walks or paints the line each time
        EXPECT_EQ(model.document()->size(), 10'000'023u);
        EXPECT_EQ(model.caret().byte, 10'000'003u);
        const auto place = view.placeOf(model.caret());
        ASSERT_TRUE(place);
        EXPECT_TRUE(view.viewport()->rect().contains(place->toRect())) << wraps;
        QTest::keyClick(&view, Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClick(&view, Qt::Key_Z);
        EXPECT_EQ(model.document()->line(0).substr(0, 2), "zx");
        model.locked = true;
    }
}

} // namespace
} // namespace genutil
