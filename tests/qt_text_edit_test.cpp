#include "qt_text_form.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QMenu>

namespace genutil {
namespace {

using text::TextDocument;
using text::TextPosition;

class TextEditing : public fake::TextViewTest {};

TEST_F(TextEditing, EveryKeyMovesOrChangesJustWhatItStandsFor) {
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

TEST_F(TextEditing, MovingUpAndDownKeepsTheColumnAndTheWrappedRows) {
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

TEST_F(TextEditing, TypingIsUndoneInTheStepsInWhichItWasDone) {
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

TEST_F(TextEditing, NothingChangesALockedOrDisabledText) {
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

TEST_F(TextEditing, TabLeavesALockedTextAndWithShiftOrCtrlAnyOther) {
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

TEST_F(TextEditing, WhatIsComposedIsSeenButNotTextUntilItIsDone) {
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

TEST_F(TextEditing, AssistiveTechnologyReadsAndEditsTheText) {
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

} // namespace
} // namespace genutil
