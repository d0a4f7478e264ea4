#include "hostif/error.h"
#include "platform/qt/dialogs.h"
#include "platform/qt/form/bind.h"
#include "platform/qt/form/gauge_bar.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/text/text_view.h"
#include "qt_sample_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest/QtTest>
#include <QVBoxLayout>
#include <QWindow>

namespace genutil {
namespace {

using testing::ElementsAre;

using fake::QtDesktopTest;
using fake::SampleForm;
using Binding = QtDesktopTest;
using Window = QtDesktopTest;

TEST(TwipScale, ConvertsByTheResolutionAndSurvivesAnyNumber) {
    struct Case {
        double dotsPerInch, twips;
        int pixels, holding;
    };
    for (const Case& each : {Case{96, 15, 1, 1}, Case{96, 22.4, 1, 2}, Case{96, -15, -1, -1},
             Case{192, 15, 2, 2}, Case{72, 40, 2, 2}, Case{0, 30, 2, 2}, Case{96, 1e300, 16777215, 16777215},
             Case{96, -1e300, -16777215, -16777215}, Case{96, std::nan(""), 0, 0}}) {
        EXPECT_EQ(TwipScale(each.dotsPerInch).pixels(each.twips), each.pixels) << each.twips;
        EXPECT_EQ(TwipScale(each.dotsPerInch).pixelsHolding(each.twips), each.holding) << each.twips;
    }
}

TEST_F(QtDesktopTest, MeasuresTextAsWideAsItsLabelShowsIt) {
    const QString text = "Wavelength AVAVA";
    form->lblTitle.width = desktop->textWidth(form->lblTitle.font, text.toStdString());
    form->lblTitle.left = 240;
    QWidget parent;
    QLabel* shown = new QLabel(&parent);
    bind(shown, form->lblTitle);
    place(shown, form->lblTitle);
    EXPECT_EQ(shown->width(), std::ceil(QFontMetricsF(shown->font()).horizontalAdvance(text)));
    EXPECT_EQ(shown->x(), TwipScale::ofScreen().pixels(240));
    EXPECT_DOUBLE_EQ(desktop->screen().width,
        QGuiApplication::primaryScreen()->size().width() * desktop->screen().twipsPerPixel);
    EXPECT_TRUE(desktop->isFixedPitch({.name = "Courier New"}));
    EXPECT_FALSE(desktop->isFixedPitch({.name = "MS Sans Serif"}));
}

TEST_F(Binding, ShowsTheModelAndReportsTheUserForEachKind) {
    form->cboUnit.items = {{"m", 1}, {"ft", 2}};
    show();
    std::string heard;
    const auto hear = [&](auto& event, const char* what) {
        event.connect([&heard, what] { heard += what; });
    };
    hear(form->txtName.change, "text ");
    hear(form->chkBold.click, "tick ");
    hear(form->optMetres.click, "option ");
    hear(form->cboUnit.click, "combo ");
    hear(form->cmdOk.click, "button ");
    hear(form->mnu_Close.click, "menu ");

    QTest::keyClicks(view<QLineEdit>(form->txtName), "7");
    QTest::mouseClick(view<QCheckBox>(form->chkBold), Qt::LeftButton, {}, {5, 5});
    QTest::mouseClick(view<QRadioButton>(form->optMetres), Qt::LeftButton, {}, {5, 5});
    QTest::keyClick(view<QComboBox>(form->cboUnit), Qt::Key_Down);
    QTest::mouseClick(view<QPushButton>(form->cmdOk), Qt::LeftButton);
    window()->findChild<QAction*>("mnu_Close")->trigger();
    view<QTabWidget>(form->tabPages)->setCurrentIndex(1);
    EXPECT_EQ(heard, "text tick option combo button menu ");
    EXPECT_EQ(form->txtName.text.get(), "7T1");
    EXPECT_EQ(form->txtName.selectionStart, 1u);
    EXPECT_TRUE(form->chkBold.ticked);
    EXPECT_TRUE(form->optMetres.selected);
    EXPECT_EQ(form->cboUnit.listIndex, 0);
    EXPECT_EQ(form->tabPages.current, 1);

    heard.clear();
    form->lblTitle.caption = "Second";
    form->txtName.setFocus();
    desktop->doEvents();
    form->txtName.text = "é2";
    form->txtName.selectAll();
    form->chkBold.ticked = false;
    form->optMetres.selected = false;
    form->cboUnit.items = {{"a", 1}, {"b", 2}, {"c", 3}};
    form->cboUnit.listIndex = 2;
    form->pnlGauge.floodPercent = 42;
    form->tabPages.current = 0;
    form->mnu_Close.caption = "&End";
    EXPECT_EQ(heard, "text tick combo "); // once each: the view does not report what it is told
    desktop->doEvents();
    EXPECT_EQ(view<QLabel>(form->lblTitle)->text(), "Second");
    EXPECT_EQ(view<QLineEdit>(form->txtName)->selectedText(), "é2");
    EXPECT_EQ(form->txtName.selectionLength, 3u);
    EXPECT_FALSE(view<QCheckBox>(form->chkBold)->isChecked());
    EXPECT_FALSE(view<QRadioButton>(form->optMetres)->isChecked());
    EXPECT_EQ(view<QComboBox>(form->cboUnit)->currentText(), "c");
    EXPECT_EQ(view<GaugeBar>(form->pnlGauge)->value(), 42);
    EXPECT_EQ(view<QTabWidget>(form->tabPages)->currentIndex(), 0);
    EXPECT_EQ(window()->findChild<QAction*>("mnu_Close")->text(), "&End");
}

TEST_F(Binding, EveryViewHasNamesAndFollowsEnabledVisibleAndToolTip) {
    show();
    for (Control* control : form->controls()) {
        if (dynamic_cast<MenuItem*>(control))
            continue;
        QWidget* shown = window()->viewOf(*control);
        ASSERT_TRUE(shown) << control->name();
        EXPECT_FALSE(shown->accessibleName().isEmpty() || shown->accessibleName().contains('&'))
            << control->name();
        control->toolTip = "Tip";
        control->enabled = false;
        EXPECT_EQ(shown->toolTip(), "Tip") << control->name();
        EXPECT_FALSE(shown->isEnabled()) << control->name();
        control->visible = false;
        EXPECT_FALSE(shown->isVisible()) << control->name();
    }
    EXPECT_EQ(QAccessible::queryAccessibleInterface(view<QWidget>(form->rtbText)->focusProxy())->role(),
        QAccessible::EditableText);
}

TEST_F(Binding, AViewFallsBackToWhatTheModelMadeOfTheUsersAct) {
    form->txtName.change.connect([&] {
        if (form->txtName.text.get().size() > 2)
            form->txtName.text = "T9";
    });
    form->optMetres.selected = true;
    show();
    QTest::keyClicks(view<QLineEdit>(form->txtName), "78");
    QTest::mouseClick(view<QRadioButton>(form->optMetres), Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(view<QLineEdit>(form->txtName)->text(), "T9");
    EXPECT_TRUE(view<QRadioButton>(form->optMetres)->isChecked());
}

TEST_F(Binding, FocusAndMouseReachTheControlTheyAreAt) {
    std::vector<std::string> log;
    for (Control* control : form->controls()) {
        control->gotFocus.connect([&log, control] { log.push_back("+" + control->name()); });
        control->lostFocus.connect([&log, control] { log.push_back("-" + control->name()); });
        control->mouseMove.connect([&log, control] { log.push_back("over " + control->name()); });
    }
    form->mouseMove.connect([&] { log.push_back("over form"); });
    show();
    press(Qt::Key_Tab);
    form->cmdOk.setFocus();
    EXPECT_TRUE(view<QPushButton>(form->cmdOk)->hasFocus());
    view<ReportView>(form->rtbText)->focusProxy()->setFocus();
    EXPECT_THAT(
        log, ElementsAre("+txtName", "-txtName", "+chkBold", "-chkBold", "+cmdOk", "-cmdOk", "+rtbText"));
    log.clear();
    const auto moveTo = [](QWidget* over, QPoint point) {
        QTest::mouseMove(window()->windowHandle(), over->mapTo(window(), point));
    };
    moveTo(view<QLabel>(form->lblTitle), {5, 5});
    moveTo(view<ReportView>(form->rtbText), {20, 20});
    moveTo(window()->contents(), {1, 1});
    EXPECT_THAT(log, ElementsAre("over lblTitle", "over rtbText", "over form"));
}

TEST_F(Window, KeyPreviewConsumesKeysBeforeTheFocusedControl) {
    std::vector<int> formKeys, controlKeys;
    form->keyDown.connect([&](KeyEvent& event) {
        formKeys.push_back(event.code);
        if (event.code == key::F1 || event.code == key::Delete)
            event.code = 0;
    });
    form->keyPress.connect([&](KeyEvent& event) {
        if (event.code == 'b')
            event.code = 0;
    });
    form->txtName.keyDown.connect([&](KeyEvent& event) { controlKeys.push_back(event.code); });
    show();
    for (const Qt::Key pressed : {Qt::Key_F1, Qt::Key_Home, Qt::Key_Delete, Qt::Key_A, Qt::Key_B})
        press(pressed);
    EXPECT_THAT(formKeys, ElementsAre(key::F1, key::Home, key::Delete, int('A'), int('B')));
    EXPECT_THAT(controlKeys, ElementsAre(key::Home, int('A'), int('B')));
    EXPECT_EQ(form->txtName.text.get(), "aT1");
}

TEST_F(Window, EnterPressesTheFocusedButtonOrElseTheDefaultOneUnlessItIsConsumed) {
    int pressed = 0;
    form->cmdOk.click.connect([&] { ++pressed; });
    show();
    press(Qt::Key_Return);
    EXPECT_EQ(pressed, 0);
    form->cmdOk.isDefault = true;
    press(Qt::Key_Return);
    EXPECT_EQ(pressed, 1);
    form->cmdOk.isDefault = false;
    form->cmdOk.setFocus();
    press(Qt::Key_Enter);
    EXPECT_EQ(pressed, 2);
    form->keyPress.connect([](KeyEvent& event) { event.code = event.code == key::Enter ? 0 : event.code; });
    press(Qt::Key_Return);
    EXPECT_EQ(pressed, 3) << "the focused button takes it first";
    form->cmdOk.isDefault = true;
    form->txtName.setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(pressed, 3);
}

TEST_F(Window, ARefusedCloseKeepsTheWindowAndAGrantedOneEndsTheForm) {
    bool refuse = true;
    UnloadReason why = UnloadReason::Code;
    form->queryUnload.connect([&](bool& refused, UnloadReason reason) {
        refused = refuse;
        why = reason;
    });
    show();
    fake::pressCloseBox(window());
    EXPECT_EQ(why, UnloadReason::CloseBox);
    EXPECT_FALSE(window()->close());
    EXPECT_EQ(why, UnloadReason::Ending);
    EXPECT_TRUE(form->isShown() && window());
    refuse = false;
    window()->close();
    EXPECT_FALSE(form->isLoaded() || window());
}

TEST_F(Window, AFormMayUnloadItselfInAHandlerAndIsThenFree) {
    auto brief = std::make_shared<SampleForm>(*desktop);
    const std::weak_ptr<SampleForm> watch = brief;
    brief->cmdOk.click.connect([raw = brief.get()] { raw->unload(); });
    brief->show(false);
    brief.reset();
    ASSERT_FALSE(watch.expired()); // an open window keeps its form
    QTest::mouseClick(window()->viewOf(watch.lock()->cmdOk), Qt::LeftButton);
    EXPECT_TRUE(watch.expired());
    desktop->doEvents();
}

TEST_F(Window, ModalShowReturnsOnHideAndOnUnloadAndNests) {
    whenShown([&] {
        EXPECT_TRUE(window()->isModal());
        form->hide();
    });
    form->show(true);
    EXPECT_TRUE(form->isLoaded());
    EXPECT_FALSE(form->isShown());

    std::string order;
    auto inner = std::make_shared<SampleForm>(*desktop);
    whenShown([&] {
        whenShown([&] {
            order += "inner ";
            inner->unload();
        });
        inner->show(true);
        order += "outer ";
        form->unload();
    });
    form->show(true);
    EXPECT_EQ(order, "inner outer ");
    EXPECT_FALSE(form->isLoaded());
}

TEST_F(Window, ContentsGetTheNominalSizeLessTheChromeAndAUserResizeReportsItBack) {
    show();
    const TwipScale scale = TwipScale::ofScreen();
    const QWidget* contents = window()->contents();
    EXPECT_EQ(contents->size(), QSize(scale.pixels(6000), scale.pixels(6000)));
    EXPECT_EQ(window()->pos(), QPoint(scale.pixels(1500), scale.pixels(1500)));
    EXPECT_GT(contents->y(), 0); // the menu bar comes on top

    int resizes = 0;
    form->resize.connect([&] { ++resizes; });
    window()->resize(window()->width() + 30, window()->height() + 20);
    EXPECT_TRUE(QTest::qWaitFor([&] { return resizes > 0; }));
    EXPECT_DOUBLE_EQ(form->width, scale.twips(scale.pixels(6000) + 30) + 120);
    EXPECT_DOUBLE_EQ(form->height, scale.twips(scale.pixels(6000) + 20) + 700);

    resizes = 0;
    form->width = 4507; // no whole number of pixels
    form->left = 3001;
    QTest::qWait(100);
    EXPECT_EQ(contents->width(), scale.pixels(4387));
    EXPECT_EQ(window()->x(), scale.pixels(3001));
    EXPECT_DOUBLE_EQ(form->width, 4507); // rounding is not reported as the user's act
    EXPECT_DOUBLE_EQ(form->left, 3001);
    EXPECT_EQ(resizes, 1);
}

TEST_F(Window, MaximizedIsReportedWithTheSizeAndRestoredAsItWas) {
    form->windowState = WindowState::Maximized;
    show();
    EXPECT_TRUE(window()->isMaximized());
    window()->showNormal();
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->windowState == WindowState::Normal; }));
    EXPECT_NEAR(form->width, 6120, 15);
    EXPECT_NEAR(form->height, 6700, 15);
}

TEST_F(Window, AFormWithoutAPlaceOrOffEveryScreenIsCentred) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const double place : {0.0, 9e6, -9e6}) {
        form->left = form->top = place;
        form->show(false);
        const QPoint off = window()->frameGeometry().center() - screen.center();
        EXPECT_LE(off.manhattanLength(), 10) << place;
        form->hide();
    }
}

TEST_F(Window, AFormWithoutAKnownWindowIsAnErrorThatNamesIt) {
    const auto unknown = std::make_shared<Form>(*desktop, "frmUnknown", "");
    try {
        unknown->show(false);
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_THAT(error.description(), testing::HasSubstr("frmUnknown"));
    }
    EXPECT_FALSE(unknown->isShown());
}

TEST_F(Window, AFloodOfRepaintsIsThinnedAndEndsWithTheLastState) {
    struct Painted : QObject {
        QStringList texts;
        bool eventFilter(QObject* label, QEvent* event) override {
            if (event->type() == QEvent::Paint) {
                texts << static_cast<QLabel*>(label)->text();
                QThread::msleep(takes);
            }
            return false;
        }
        unsigned long takes = 0; // milliseconds
    } painted;
    show();
    view<QLabel>(form->lblTitle)->installEventFilter(&painted);
    for (int i = 1; i <= 50; ++i) {
        form->lblTitle.caption = std::to_string(i);
        desktop->repaint(form->lblTitle);
    }
    EXPECT_EQ(painted.texts.size(), 50) << "a burst is painted as a whole";
    painted.texts.clear();
    painted.takes = 5;
    QElapsedTimer clock;
    int count = 0;
    for (clock.start(); clock.elapsed() < 1000; ++count) {
        form->lblTitle.caption = std::to_string(count);
        desktop->repaint(form->lblTitle);
        desktop->bringToFront(*form);
    }
    EXPECT_GE(painted.texts.size(), 2);
    EXPECT_LE(painted.texts.size(), 100) << "a tenth of the time, and 100 ms in hand";
    desktop->doEvents();
    EXPECT_EQ(painted.texts.last().toInt(), count - 1);
}

TEST_F(QtDesktopTest, MessageBoxesShowWhatIsAskedAndGiveTheAnswer) {
    struct Case {
        Message message;
        Qt::Key key;
        Answer answer;
    };
    // One button: Escape presses it. Yes and No: nothing else ends the question.
    for (const Case& each : {
             Case{{.text = "<b>Done", .icon = Icon::Information}, Qt::Key_Escape, Answer::Ok},
             Case{{.text = "Go on?", .buttons = Buttons::OkCancel}, Qt::Key_Escape, Answer::Cancel},
             Case{{.text = "Save?", .buttons = Buttons::YesNo, .defaultAnswer = Answer::No}, Qt::Key_Return,
                 Answer::No},
             Case{{.text = "Save?", .buttons = Buttons::YesNoCancel, .defaultAnswer = Answer::Yes},
                 Qt::Key_Return, Answer::Yes},
             Case{{.text = "Save?", .buttons = Buttons::YesNoCancel}, Qt::Key_Escape, Answer::Cancel},
         }) {
        desktop->setPointer(Pointer::Hourglass);
        whenShown([&] {
            auto* box = static_cast<QMessageBox*>(QApplication::activeModalWidget());
            EXPECT_EQ(box->windowTitle(), "Kestal utilities");
            EXPECT_EQ(box->text().toStdString(), each.message.text);
            EXPECT_EQ(box->textFormat(), Qt::PlainText);
            EXPECT_FALSE(QApplication::overrideCursor());
            if (each.message.buttons == Buttons::YesNo) {
                QTest::keyClick(box, Qt::Key_Escape);
                EXPECT_FALSE(box->close());
                QMetaObject::invokeMethod(box, "reject");
                EXPECT_TRUE(box->isVisible());
            }
            QTest::keyClick(box, each.key);
        });
        EXPECT_EQ(desktop->ask(each.message), each.answer) << each.message.text;
        EXPECT_EQ(desktop->pointer(), Pointer::Hourglass);
        desktop->setPointer(Pointer::Default);
        EXPECT_FALSE(QApplication::overrideCursor());
    }
}

TEST_F(QtDesktopTest, FileDialogsHandBackTheChoiceAndACancelledOneNothing) {
    QTemporaryDir folder;
    const QString path = folder.filePath("NET.LOG");
    QFile(path).open(QIODevice::WriteOnly);
    FileDialog dialog;
    dialog.filter = "Report|*.rep|Log|*.log|";
    dialog.folder = folder.path().toStdString();
    const auto finish = [&](bool accepts) {
        whenShown([&, accepts] {
            auto* box = static_cast<QFileDialog*>(QApplication::activeModalWidget());
            box->selectNameFilter(box->nameFilters().at(1));
            box->selectFile(path);
            QMetaObject::invokeMethod(box, accepts ? "accept" : "reject");
        });
    };
    finish(false);
    EXPECT_FALSE(desktop->showOpen(*form, dialog));
    EXPECT_EQ(dialog.fileName, "");
    EXPECT_EQ(dialog.filterIndex, 1);
    finish(true);
    EXPECT_TRUE(desktop->showOpen(*form, dialog));
    EXPECT_EQ(dialog.fileName, path.toStdString());
    EXPECT_EQ(dialog.filterIndex, 2);
    dialog.flags = dialogflags::OverwritePrompt;
    finish(false);
    EXPECT_FALSE(desktop->showSave(*form, dialog));
    EXPECT_EQ(dialog.fileName, path.toStdString());
    for (const Qt::Key reply : {Qt::Key_N, Qt::Key_Y}) {
        finish(true);
        QTimer::singleShot(100, qApp, [&, reply] {
            if (reply == Qt::Key_N)
                finish(false); // the dialog, to which No leads back
            QTest::keyClick(QApplication::activeModalWidget(), reply);
        });
        EXPECT_EQ(desktop->showSave(*form, dialog), reply == Qt::Key_Y);
    }
}

TEST(FileDialogs, FiltersMatchNamesInUpperAndLowerCase) {
    EXPECT_EQ(toNameFilters("Log (*.LOG)|*.log|Extract (*.&*)|*.&*;*.x1|All files (*.*)|*.*|"),
        QStringList(
            {"Log (*.LOG) (*.[lL][oO][gG])", "Extract (*.&*) (*.&* *.[xX]1)", "All files (*.*) (*)"}));
}

} // namespace
} // namespace genutil
