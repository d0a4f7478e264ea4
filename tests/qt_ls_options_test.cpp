#include "lsoptions/frm_ls_options.h"
#include "lsoptions/frm_ls_save_options.h"
#include "platform/qt/form/number_box.h"
#include "platform/qt/windows/form_views.h"
#include "qt_sample_form.h"
#include "support/ls_facts.h"
#include "support/ls_world.h"

#include <QMessageBox>

#include <algorithm>
#include <map>

namespace genutil {
namespace {

// The dialogs in real windows, with a fake host behind them. Set-up has ended, as the modal show() leaves it.
class LSOptionsWindowTest : public testing::Test {
protected:
    fake::LSWorld world;
    std::unique_ptr<Desktop> desktop = makeQtDesktop(standardFormViews());
    Component component{*desktop, world.files, world.host};
    std::shared_ptr<frmLS_Options> form = std::make_shared<frmLS_Options>(component);
    FormWindow* window = nullptr;
    QTimer answering; // every message that comes
    int messages = 0;

    void SetUp() override {
        form->LSOptPref = world.options;
        form->LSOptPrefDefaults = world.defaults;
        form->modal = 0;
        form->Form_Setup("", nullptr);
        window = fake::openWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        answering.callOnTimeout([this] {
            if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                ++messages;
                box->accept();
                window->activateWindow(); // as a window manager does
            }
        });
        answering.start(10);
    }
    ~LSOptionsWindowTest() override {
        form->unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QWidget* view(int option) const { return window->findChild<QWidget*>(lsOption(option).control); }
};

TEST_F(LSOptionsWindowTest, TabGoesThroughTheOptionsInTheirOrder) {
    std::map<int, int> numbered; // focus number, option
    for (int option = 1; option <= 48; ++option)
        if (fake::lsFacts[option - 1].focus != 0)
            numbered[fake::lsFacts[option - 1].focus] = option;
    EXPECT_EQ(numbered.size(), 34u);
    std::vector<QWidget*> wanted, seen;
    for (const auto& [number, option] : numbered)
        if (view(option)->isEnabled())
            wanted.push_back(view(option));
    for (QWidget* at = QApplication::focusWidget(); at != window->viewOf(form->cmdOK) && seen.size() < 99;
         at = QApplication::focusWidget()) {
        if (std::ranges::find(wanted, at) != wanted.end())
            seen.push_back(at);
        QTest::keyClick(at, Qt::Key_Tab);
    }
    EXPECT_EQ(seen, wanted);
}

TEST_F(LSOptionsWindowTest, OnASmallScreenTheButtonsStayAndWhatHasTheFocusComesIntoView) {
    EXPECT_TRUE(window->screen()->availableGeometry().contains(window->frameGeometry()));
    const auto isSeen = [](const QWidget* part) {
        return part->visibleRegion().boundingRect() == part->rect();
    };
    QWidget* const ok = window->viewOf(form->cmdOK);
    int stops = 0;
    for (QWidget* at = QApplication::focusWidget(); at != ok && ++stops < 99;
         at = QApplication::focusWidget()) {
        EXPECT_TRUE(isSeen(at)) << qPrintable(at->objectName());
        EXPECT_TRUE(isSeen(ok) && isSeen(window->viewOf(form->cmdCancel)));
        QTest::keyClick(at, Qt::Key_Tab);
    }
    EXPECT_GT(stops, 30);
}

TEST_F(LSOptionsWindowTest, ARefusedBoxKeepsTheFocusWhateverTheUserTriesNextAndSaysSoOnce) {
    constexpr int azimuth = 16, azimuthCentring = 17, directions = 18, dump = 5, outlierTest = 48;
    form->boxOf(directions).text = "0"; // would be refused, too, were it left
    QWidget* const ok = window->viewOf(form->cmdOK);
    for (QWidget* target :
        {static_cast<QWidget*>(window), view(azimuth), view(directions), view(dump), view(outlierTest), ok}) {
        messages = 0;
        view(azimuth)->setFocus();
        QTest::keyClick(view(azimuth), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(view(azimuth), "0");
        if (target == window)
            QTest::keyClick(window->windowHandle(), Qt::Key_O, Qt::AltModifier);
        else if (target == view(azimuth))
            QTest::keyClick(target, Qt::Key_Tab);
        else
            QTest::mouseClick(target, Qt::LeftButton, {}, {6, 8});
        QTest::qWait(150); // an access key presses its button for a moment
        ASSERT_TRUE(form->isLoaded());
        EXPECT_EQ(messages, 1) << qPrintable(target->objectName());
        EXPECT_EQ(QApplication::focusWidget(), view(azimuth));
        EXPECT_FALSE(form->checkOf(dump).ticked || form->isChanged() || QApplication::activePopupWidget());
    }
    QTest::keyClicks(view(azimuth), "7");
    QTest::keyClick(view(azimuth), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), view(azimuthCentring));
    QTest::mouseClick(ok, Qt::LeftButton);
    EXPECT_FALSE(form->isLoaded());
    EXPECT_EQ(form->LSOptPref->read("AzimuthSD").toDouble(), 7);
}

TEST_F(LSOptionsWindowTest, CancelAndSetDefaultsActAlthoughABoxHoldsAZero) {
    constexpr int azimuth = 16;
    form->cmdDefaults.visible = true;
    for (const bool byMouse : {true, false})
        for (const auto& [button, key] :
            {std::pair(&form->cmdDefaults, Qt::Key_D), std::pair(&form->cmdCancel, Qt::Key_C)}) {
            view(azimuth)->setFocus();
            QTest::keyClick(view(azimuth), Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(view(azimuth), "0");
            messages = 0;
            int presses = 0;
            const Connection counting = button->click.connectScoped([&] { ++presses; });
            if (byMouse)
                QTest::mouseClick(window->viewOf(*button), Qt::LeftButton);
            else
                QTest::keyClick(window->windowHandle(), key, Qt::AltModifier);
            EXPECT_EQ(presses, 1) << button->name();
            EXPECT_EQ(messages, button == &form->cmdDefaults ? 1 : 2) << "zero is refused; Cancel then asks";
            EXPECT_EQ(form->boxOf(azimuth).text.get(), button == &form->cmdDefaults ? "0.005" : "0");
        }
}

TEST_F(LSOptionsWindowTest, BothDialogsFitASmallScreenAndEveryBoxALongNumber) {
    auto* const box = static_cast<QLineEdit*>(view(10));
    box->setText(NumberBox::longest);
    box->end(false);
    EXPECT_EQ(box->cursorPositionAt({3, box->height() / 2}), 0); // its start is seen, too
    const auto save = std::make_shared<frmLS_SaveOptions>(component);
    save->LSOptPref = world.options;
    save->Form_Setup(nullptr);
    for (const QWidget* part : QApplication::allWidgets())
        if (part->isVisible()) {
            EXPECT_TRUE(QRect(0, 0, 1024, 768 - 40).contains(part->rect())); // with a title bar
            EXPECT_GE(part->width(), part->minimumSizeHint().width()) << qPrintable(part->objectName());
        }
    save->unload();
}

TEST_F(LSOptionsWindowTest, MarksAndColoursShowWithoutMovingAnything) {
    TextBox& model = form->boxOf(10);
    QWidget* const box = view(10);
    const QRect place = box->geometry();
    QImage before = window->grab().toImage();
    using enum BackColor;
    for (const auto& [colour, marked] : std::initializer_list<std::pair<BackColor, bool>>{
             {Info, true}, {Refused, true}, {Light3D, true}, {Normal, true}, {Normal, false}}) {
        model.backColor = colour;
        model.marked = marked;
        const QImage now = window->grab().toImage();
        EXPECT_NE(now, std::exchange(before, now)) << int(colour);
        EXPECT_EQ(box->geometry(), place);
        EXPECT_EQ(box->accessibleDescription().endsWith("Differs from the default."), model.marked);
    }
    EXPECT_EQ(box->accessibleName(), "Horizontal Angles, observation error, seconds");

    int heard = 0;
    form->dummyLabels.front().mouseMove.connect([&] { ++heard; });
    QMouseEvent move(QEvent::MouseMove, {5, 5}, view(15)->mapToGlobal(QPointF(5, 5)), Qt::NoButton, {}, {});
    QApplication::sendEvent(view(15), &move);
    EXPECT_EQ(heard, 1);
}

TEST_F(LSOptionsWindowTest, NumbersBelowEachOtherStandOnTheirDecimalPoints) {
    const auto pointOf = [&](int option) {
        auto* const box = static_cast<QLineEdit*>(view(option));
        const qsizetype point = box->text().indexOf(QLocale().decimalPoint());
        box->setCursorPosition(point < 0 ? int(box->text().size()) : int(point));
        return box->mapTo(window, box->inputMethodQuery(Qt::ImCursorRectangle).toRectF().center()).x();
    };
    const auto expectAligned = [&](const char* when) {
        QCoreApplication::processEvents();
        window->grab(); // boxes place their texts when they paint
        for (const auto& [first, others] : std::initializer_list<std::pair<int, std::vector<int>>>{
                 {16, {10, 18, 12, 14, 21, 25}}, {13, {20}}, {17, {11, 19, 33}}, {8, {9}}, {1, {2}}})
            for (const int other : others)
                EXPECT_NEAR(pointOf(first), pointOf(other), 1)
                    << when << ", options " << first << ", " << other;
    };
    form->boxOf(10).text = "10.5";
    form->boxOf(18).text = "-1234567.1234567"; // as much as the box holds
    form->boxOf(18).text = "7";
    expectAligned("loaded");
    view(10)->setFocus();
    QTest::keyClicks(view(10), "2.125");
    QTest::keyClick(view(10), Qt::Key_Tab);
    expectAligned("typed");
}

TEST_F(LSOptionsWindowTest, TheWheelChangesOnlyTheListThatHasTheFocus) {
    QWidget* const list = view(15);
    const auto turn = [&] {
        const QPointF at(5, 5);
        QWheelEvent wheel(
            at, list->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(list, &wheel);
        return form->listOf(15).listIndex.get();
    };
    EXPECT_EQ(turn(), 3);
    EXPECT_FALSE(list->hasFocus());
    list->setFocus();
    EXPECT_EQ(turn(), 4);
}

} // namespace
} // namespace genutil
