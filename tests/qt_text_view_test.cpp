#include "hostif/form.h"
#include "platform/qt/line_ruler.h"
#include "platform/qt/text_view.h"
#include "scripted_desktop.h"
#include "text/character_width.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QScrollBar>
#include <QtTest/QtTest>

#include <random>

namespace genutil {
namespace {

using text::TextDocument;
using text::TextPosition;

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

struct TextForm : Form {
    explicit TextForm(Desktop& desktop) : Form(desktop, "frmText", "Text") {}
    ReportText rtbText{*this, "rtbText"};
};

class TextViewTest : public testing::Test {
protected:
    TextViewTest() {
        model.font = Font{.name = "Courier New", .size = 10};
        view.setModel(&model);
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.resize(400, 10 * int(rowHeight()) + 5); // ten whole rows
        view.show();
        view.activateWindow();
        view.setFocus();
    }
    ~TextViewTest() override { view.setModel(nullptr); }

    void showText(const std::string& whole) {
        model.setDocument(std::make_shared<TextDocument>(TextDocument::fromBytes(whole)));
    }
    void showLines(int count, const std::string& rest = "") {
        std::string whole;
        for (int i = 0; i < count; ++i)
            whole += (i ? "\n" : "") + std::to_string(i) + rest;
        showText(whole);
    }
    // A text for editing in which [ is the selection's start, if there is one, and | the caret.
    void showMarked(std::string marked) {
        model.locked = false;
        const std::size_t caretMark = marked.find('|');
        const std::size_t anchorMark = marked.find('[');
        std::erase_if(marked, [](char c) { return c == '|' || c == '['; });
        showText(marked);
        const auto place = [&](std::size_t mark, std::size_t other) {
            return model.document()->positionAt(mark - (other < mark));
        };
        const TextPosition caret = place(caretMark, anchorMark);
        model.userSelect(anchorMark == std::string::npos ? caret : place(anchorMark, caretMark), caret);
    }
    std::string marked() const {
        const TextDocument& document = *model.document();
        std::string all = document.text({{}, document.end()});
        const bool selected = model.anchor() != model.caret();
        const bool caretFirst = model.caret() < model.anchor();
        all.insert(document.offsetOf(std::max(model.anchor(), model.caret())), caretFirst ? "[" : "|");
        if (selected)
            all.insert(document.offsetOf(std::min(model.anchor(), model.caret())), caretFirst ? "|" : "[");
        return all;
    }
    double rowHeight() const { return std::ceil(QFontMetricsF(view.font()).height()); }
    QPoint at(int row, double column) const {
        return {int(3 + column * QFontMetricsF(view.font()).horizontalAdvance('x')),
            int((row + 0.5) * rowHeight())};
    }
    void compose(const QString& preedit, const QString& commit, int from = 0, int length = 0) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit, from, length);
        QApplication::sendEvent(&view, &event);
    }
    QImage picture() {
        view.viewport()->repaint();
        return view.viewport()->grab().toImage();
    }

    fake::ScriptedDesktop desktop;
    std::shared_ptr<TextForm> form = std::make_shared<TextForm>(desktop);
    ReportText& model = form->rtbText;
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

TEST_F(TextViewTest, EveryKeyMovesOrChangesJustWhatItStandsFor) {
    struct Case {
        const char* before;
        int key;
        Qt::KeyboardModifiers held;
        const char* after;
    };
    constexpr auto none = Qt::NoModifier;
    constexpr auto shift = Qt::ShiftModifier;
    constexpr auto ctrl = Qt::ControlModifier;
    QApplication::clipboard()->setText("p\nq");
    for (const Case& each : {
             Case{"a|b", Qt::Key_Right, none, "ab|"},
             Case{"ab|\r\nc", Qt::Key_Right, none, "ab\r\n|c"},
             Case{"ab\r\n|c", Qt::Key_Left, none, "ab|\r\nc"},
             Case{"|e\u0301\u0323x", Qt::Key_Right, none, "e\u0301\u0323|x"},
             Case{"\U0001F469\u200D\U0001F680|x", Qt::Key_Left, none, "|\U0001F469\u200D\U0001F680x"},
             Case{"a[bc|d", Qt::Key_Left, none, "a|bcd"},
             Case{"a|bc[d", Qt::Key_Right, none, "abc|d"},
             Case{"a[b|c", Qt::Key_Right, shift, "a[bc|"},
             Case{"ab_1 |-- c", Qt::Key_Right, ctrl, "ab_1 -- |c"},
             Case{"ab_1  |c", Qt::Key_Left, ctrl, "|ab_1  c"},
             Case{"ab\n|c", Qt::Key_Left, Qt::ControlModifier | shift, "ab|\n[c"},
             Case{"ab\ncd|e", Qt::Key_Home, none, "ab\n|cde"},
             Case{"a|b\ncd", Qt::Key_End, shift, "a[b|\ncd"},
             Case{"ab\nc|d", Qt::Key_Home, ctrl, "|ab\ncd"},
             Case{"a|b\ncd", Qt::Key_End, ctrl, "ab\ncd|"},
             Case{"a測|\n\té", Qt::Key_Down, none, "a測\n|\té"},
             Case{"e\u0301e\u0301x\nab|c", Qt::Key_Up, none, "e\u0301e\u0301|x\nabc"},
             Case{"a|b", Qt::Key_Up, none, "a|b"},
             Case{"a\nb|", Qt::Key_PageUp, shift, "a|\nb["},
             Case{"a[b|c", Qt::Key_Z, none, "az|c"},
             Case{"a|\r\nb", Qt::Key_Return, none, "a\r\n|\r\nb"},
             Case{"a|b", Qt::Key_Tab, none, "a\t|b"},
             Case{"ae\u0301|b", Qt::Key_Backspace, none, "ae|b"},
             Case{"a|e\u0301b", Qt::Key_Delete, none, "a|b"},
             Case{"a\r\n|b", Qt::Key_Backspace, none, "a|b"},
             Case{"a|\r\nb", Qt::Key_Delete, none, "a|b"},
             Case{"x [yz|", Qt::Key_Backspace, none, "x |"},
             Case{"one two|", Qt::Key_Backspace, ctrl, "one |"},
             Case{"one |two x", Qt::Key_Delete, ctrl, "one |x"},
             Case{"a[b|c", Qt::Key_V, ctrl, "ap\nq|c"},
             Case{"a|\r\n", Qt::Key_Insert, shift, "ap\r\nq|\r\n"},
             Case{"a[b|c", Qt::Key_X, ctrl, "a|c"},
             Case{"|ab\nc", Qt::Key_A, ctrl, "[ab\nc|"},
             Case{"a|b", Qt::Key_G, ctrl, "a|b"},
             Case{"a|b", Qt::Key_G, Qt::AltModifier, "a|b"},
         }) {
        if (each.held == ctrl && each.key == Qt::Key_X)
            QApplication::clipboard()->setText("p\nq");
        showMarked(each.before);
        QTest::keyClick(&view, Qt::Key(each.key), each.held);
        EXPECT_EQ(marked(), each.after) << each.before << " " << each.key;
    }
    EXPECT_EQ(QApplication::clipboard()->text(), "b");
}

TEST_F(TextViewTest, MovingUpAndDownKeepsTheColumnAndTheWrappedRows) {
    showMarked("abcdefgh|\nab\nabcdefghij");
    const auto press = [&](std::initializer_list<int> keys) {
        for (const int each : keys)
            QTest::keyClick(&view, Qt::Key(each));
    };
    press({Qt::Key_Down, Qt::Key_Down});
    EXPECT_EQ(marked(), "abcdefgh\nab\nabcdefgh|ij");
    press({Qt::Key_Up, Qt::Key_Left, Qt::Key_Down});
    EXPECT_EQ(marked(), "abcdefgh\nab\na|bcdefghij");
    model.wrapsLines = true;
    view.resize(at(0, 10).x(), view.height()); // "aaaa bbbb " is a row
    showMarked("aaaa bb|bb cccc");
    press({Qt::Key_Down, Qt::Key_Home});
    EXPECT_EQ(marked(), "aaaa bbbb |cccc");
    press({Qt::Key_End, Qt::Key_Up, Qt::Key_End});
    EXPECT_EQ(marked(), "aaaa bbbb| cccc");
}

TEST_F(TextViewTest, TypingIsUndoneInTheStepsInWhichItWasDone) {
    showMarked("|end");
    QTest::keyClicks(&view, "one");
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClicks(&view, "two");
    QTest::keyClick(&view, Qt::Key_Backspace);
    EXPECT_EQ(marked(), "oneentw|d");
    std::vector<std::string> steps;
    for (int i = 0; i < 5 && model.document()->canUndo(); ++i) {
        QTest::keyClick(&view, Qt::Key_Z, Qt::ControlModifier);
        steps.push_back(marked());
    }
    EXPECT_THAT(steps, testing::AllOf(testing::Contains("oneen|d"), testing::Contains("|end"),
                           testing::SizeIs(testing::Le(3))));
    model.sentCommand(ReportText::Command::Redo);
    EXPECT_EQ(marked(), "one|end");
}

TEST_F(TextViewTest, NothingChangesALockedOrDisabledText) {
    struct Case {
        bool locked;
        bool enabled;
    };
    for (const Case& each : {Case{true, true}, Case{false, false}}) {
        showMarked("a[b|c\n");
        model.locked = each.locked;
        model.enabled = each.enabled;
        QApplication::clipboard()->setText("p");
        for (const int pressed : {int(Qt::Key_X), int(Qt::Key_Return), int(Qt::Key_Tab),
                 int(Qt::Key_Backspace), int(Qt::Key_Delete)})
            QTest::keyClick(&view, Qt::Key(pressed));
        for (const auto command : {ReportText::Command::Cut, ReportText::Command::Paste,
                 ReportText::Command::Delete, ReportText::Command::Undo})
            model.sentCommand(command);
        compose("x", "y");
        EXPECT_FALSE(view.inputMethodQuery(Qt::ImEnabled).toBool());
        QAccessible::queryAccessibleInterface(&view)->editableTextInterface()->insertText(0, "z");
        EXPECT_EQ(marked(), "a[b|c\n");
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->state().readOnly, 1u);
        model.enabled = true;
    }
    const QPointer<QMenu> menu = [&] {
        view.addAction(new QAction("Find", &view));
        QTest::keyClick(&view, Qt::Key_F10, Qt::ShiftModifier);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }();
    ASSERT_TRUE(menu);
    QStringList offered;
    for (const QAction* action : menu->actions())
        if (action->isEnabled() && !action->isSeparator())
            offered << action->text();
    EXPECT_EQ(offered,
        QStringList({"&Undo", "&Redo", "Cu&t", "&Copy", "&Paste", "&Delete", "Select &All", "Find"}).mid(2));
    menu->close();
}

TEST_F(TextViewTest, TabLeavesALockedTextAndWithShiftOrCtrlAnyOther) {
    QWidget window;
    QWidget* others[2] = {};
    for (QWidget*& other : others) {
        other = new QWidget(&window);
        other->setFocusPolicy(Qt::TabFocus);
    }
    view.setParent(&window);
    QWidget::setTabOrder(others[0], &view);
    QWidget::setTabOrder(&view, others[1]);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    struct Case {
        bool locked;
        Qt::Key key;
        Qt::KeyboardModifiers held;
        QWidget* focus;
    };
    for (const Case& each : {Case{true, Qt::Key_Tab, {}, others[1]}, Case{false, Qt::Key_Tab, {}, &view},
             Case{false, Qt::Key_Backtab, Qt::ShiftModifier, others[0]},
             Case{false, Qt::Key_Tab, Qt::ControlModifier, others[1]}}) {
        model.locked = each.locked;
        view.show();
        view.setFocus();
        QTest::keyClick(&view, each.key, each.held);
        EXPECT_EQ(window.focusWidget(), each.focus) << each.locked << each.key;
    }
    view.setParent(nullptr);
}

TEST_F(TextViewTest, WhatIsComposedIsSeenButNotTextUntilItIsDone) {
    showMarked("é[x|y\nnext");
    const QImage before = picture();
    compose("ni", "");
    EXPECT_EQ(marked(), "é|y\nnext");
    const QImage composing = picture();
    EXPECT_NE(composing, before);
    compose("", "你");
    EXPECT_EQ(marked(), "é你|y\nnext");
    EXPECT_NE(picture(), composing);
    EXPECT_EQ(view.inputMethodQuery(Qt::ImSurroundingText).toString(), "é你y");
    EXPECT_EQ(view.inputMethodQuery(Qt::ImCursorPosition).toInt(), 2);
    compose("", "妳", -1, 1);
    EXPECT_EQ(marked(), "é妳|y\nnext");
    EXPECT_TRUE(view.rect().contains(view.inputMethodQuery(Qt::ImCursorRectangle).toRectF().toRect()));
}

TEST_F(TextViewTest, AssistiveTechnologyReadsAndEditsTheText) {
    showMarked("a\U0001F600b\r\n[cé|");
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&view);
    QAccessibleTextInterface* told = face->textInterface();
    int from = 0, to = 0;
    EXPECT_EQ(told->text(0, told->characterCount()), "a\U0001F600b\ncé");
    told->selection(0, &from, &to);
    EXPECT_EQ(from, 5);
    EXPECT_EQ(told->cursorPosition(), 7);
    told->setCursorPosition(3);
    face->editableTextInterface()->replaceText(1, 3, "x\ny");
    EXPECT_EQ(marked(), "ax\r\ny|b\r\ncé");
    EXPECT_EQ(told->offsetAtPoint(told->characterRect(4).center()), 4);

    showLines(200'000, " of many lines"); // told in part
    EXPECT_LT(told->characterCount(), 1'000'000);
    model.select({150'000, 2}, {150'000, 6});
    told->selection(0, &from, &to);
    EXPECT_EQ(told->text(from, to), "0000");
    told->setSelection(0, from, from + 1);
    EXPECT_EQ(model.anchor(), (TextPosition{150'000, 2}));
    EXPECT_EQ(model.caret(), (TextPosition{150'000, 3}));
}

TEST_F(TextViewTest, ControlAndDirectionCharactersAreSeenAndChangeNoOrder) {
    for (const bool wraps : {false, true}) {
        model.wrapsLines = wraps;
        const auto shown = [&](const std::string& line) {
            showText(line);
            return picture();
        };
        const int column = at(0, 2).x();
        const auto rest = [&](const QImage& image) { return image.copy(column, 0, 200, image.height()); };
        const QImage letter = shown("1|abc 123");
        std::vector<QImage> seen{letter};
        for (const char* control :
            {"\x1B", "\x7F", "\u0085", "\u202E", "\u2067", "\u200B", "\uFEFF", "\u2028"}) {
            seen.push_back(shown("1" + std::string(control) + "abc 123"));
            EXPECT_EQ(rest(seen.back()), rest(letter)) << wraps << control + 0;
            for (std::size_t i = 0; i + 1 < seen.size(); ++i)
                EXPECT_NE(seen[i], seen.back()) << wraps << i;
        }
        // An Arabic or Thai word leaves what stands behind it at its column.
        const auto behind = [&](const QImage& image) {
            return image.copy(at(0, 8).x(), 0, 200, image.height());
        };
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
                fresh.showPosition(document.end());
                fresh.showPosition(top);
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
