#include "qt_sample_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMessageBox>

// What a form hears of a user who is faster than what he has set off, and how it ends.
namespace genutil {
namespace {

using testing::Each;
using Window = fake::QtDesktopTest;
using fake::pressCloseBox;
using fake::SampleForm;

void after(int milliseconds, std::function<void()> act) {
    QTimer::singleShot(milliseconds, qApp, std::move(act));
}

// Presses a button of the question that is open, until none is; on a slow machine it may not be there yet.
void answer(QMessageBox::StandardButton button, int tries = 100) {
    if (!QApplication::activeModalWidget() && tries > 0)
        return after(20, [=] { answer(button, tries - 1); });
    while (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        box->button(button)->click();
        if (box->isVisible())
            return;
    }
}

// Runs the application for a second at most. Whether it has ended by itself.
bool ends() {
    constexpr int tooLate = 7;
    QTimer limit;
    limit.callOnTimeout([] { QCoreApplication::exit(tooLate); });
    limit.start(1000);
    return QCoreApplication::exec() != tooLate;
}

TEST_F(Window, AnAccessKeyAndTheNextKeyPressAButtonOnce) {
    int asked = 0;
    const auto work = [&] {
        ++asked;
        desktop->ask({.text = "Sure?", .buttons = Buttons::YesNo});
    };
    form->cmdOk.click.connect(work);
    for (const Qt::Key next : {Qt::Key_Return, Qt::Key_Space, Qt::Key_O}) {
        show();
        asked = 0;
        after(60, [&] { press(next, next == Qt::Key_O ? Qt::AltModifier : Qt::NoModifier); });
        after(300, [] { answer(QMessageBox::No); });
        press(Qt::Key_O, Qt::AltModifier);
        QTest::qWait(400); // an access key presses its button for a moment
        EXPECT_EQ(asked, 1) << next;
        EXPECT_TRUE(form->hearsUser());
    }
    // While it saves and lets events run, the same.
    int saved = 0;
    form->chkBold.click.connect([&] { ++saved; });
    form->optMetres.click.connect([&] { form->cmdOk.userPress(); });
    form->cmdOk.click.connect([&] {
        press(Qt::Key_B, Qt::AltModifier);
        EXPECT_FALSE(form->userClose(UnloadReason::CloseBox));
    });
    after(100, [] { answer(QMessageBox::Yes); });
    press(Qt::Key_M, Qt::AltModifier);
    EXPECT_EQ(saved, 0);
    window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    press(Qt::Key_B, Qt::AltModifier);
    EXPECT_EQ(saved, 1) << "at once: the next key may close the form";
}

TEST_F(Window, AQuestionOutlivesTheWindowItStandsOn) {
    Answer given = Answer::Cancel;
    show();
    after(50, [&] { form->unload(); });
    after(100, [&] { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); });
    after(150, [] { answer(QMessageBox::Yes); });
    given = desktop->ask({.text = "Sure?", .buttons = Buttons::YesNo});
    EXPECT_EQ(given, Answer::Yes);
}

TEST_F(Window, AQuitEndsAtOnceUnlessAFormRefusesOrAQuestionIsOpen) {
    std::vector<UnloadReason> reasons;
    std::vector<std::shared_ptr<SampleForm>> all;
    for (int i = 0; i < 4; ++i) {
        all.push_back(std::make_shared<SampleForm>(*desktop));
        all.back()->queryUnload.connect([&](bool&, UnloadReason why) { reasons.push_back(why); });
        all.back()->show(false);
    }
    after(0, &QCoreApplication::quit);
    EXPECT_TRUE(ends());
    EXPECT_EQ(reasons.size(), 4u);
    EXPECT_THAT(reasons, Each(UnloadReason::Ending));

    bool refuses = true;
    form->queryUnload.connect([&](bool& refused, UnloadReason) { refused = refuses; });
    form->show(false);
    after(0, &QCoreApplication::quit);
    EXPECT_FALSE(ends());
    EXPECT_TRUE(form->isLoaded());
    refuses = false;

    Answer given = Answer::Cancel;
    form->cmdOk.click.connect([&] {
        given = desktop->ask({.text = "Sure?", .buttons = Buttons::YesNo, .defaultAnswer = Answer::No});
        EXPECT_TRUE(form->isLoaded()) << "not under the feet of its own handler";
    });
    after(0, [&] { form->cmdOk.userPress(); });
    after(50, &QCoreApplication::quit);
    after(150, [] { answer(QMessageBox::Yes); });
    EXPECT_TRUE(ends());
    EXPECT_EQ(given, Answer::Yes);
    EXPECT_FALSE(form->isLoaded());

    // Of two modal forms, the front one is asked first.
    const auto below = std::make_shared<SampleForm>(*desktop), above = std::make_shared<SampleForm>(*desktop);
    std::string order;
    below->queryUnload.connect([&](bool&, UnloadReason) { order += "below "; });
    above->queryUnload.connect([&](bool&, UnloadReason) { order += "above "; });
    below->cmdOk.click.connect([&] { above->show(true); });
    after(0, [&] { below->show(true); });
    after(50, [&] { below->cmdOk.userPress(); });
    after(100, &QCoreApplication::quit);
    EXPECT_TRUE(ends());
    EXPECT_EQ(order, "above below ");
}

TEST_F(Window, TheCloseBoxLeavesTheBoxThatHasTheFocusFirst) {
    std::string heard;
    bool refuses = true;
    form->txtName.lostFocus.connect([&] { heard += "left "; });
    form->txtName.gotFocus.connect([&] { heard += "entered "; });
    form->queryUnload.connect([&](bool& refused, UnloadReason why) {
        heard += why == UnloadReason::CloseBox ? "asked " : "ending ";
        refused = refuses;
    });
    show();
    pressCloseBox(window());
    EXPECT_EQ(heard, "entered left asked entered ");
    refuses = false;
    heard.clear();
    pressCloseBox(window());
    EXPECT_EQ(heard, "left asked ");
    EXPECT_FALSE(form->isLoaded());
}

TEST_F(Window, APlacementThatTheScreenCannotShowIsFittedAndKeepsItsNumbers) {
    const Screen screen = desktop->screen();
    struct Case {
        double left, top, width, height;
    };
    for (const Case& each : {Case{600, 450, screen.width * 1.5, screen.height * 2},
             {screen.width * 3, screen.height * 3, 3000, 3000}, {600, 450, 3000, 3000}}) {
        const auto placed = std::make_shared<SampleForm>(*desktop);
        placed->left = each.left;
        placed->top = each.top;
        placed->width = each.width;
        placed->height = each.height;
        placed->show(false);
        FormWindow* const shown = fake::openWindow();
        ASSERT_TRUE(shown && QTest::qWaitForWindowExposed(shown));
        QTest::qWait(200); // for a window manager's own wishes
        EXPECT_TRUE(shown->screen()->availableGeometry().contains(shown->frameGeometry())) << each.width;
        EXPECT_EQ(
            std::vector({placed->left.get(), placed->top.get(), placed->width.get(), placed->height.get()}),
            std::vector({each.left, each.top, each.width, each.height}));
        placed->unload();
    }
}

TEST_F(Window, AClickThatEntersABoxLeavesWhatTheBoxSelects) {
    form->txtName.text = "10.02005";
    form->txtName.gotFocus.connect([&] { form->txtName.selectAll(); });
    form->cmdOk.tabIndex = 0;
    form->txtName.tabIndex = 1;
    show();
    form->cmdOk.setFocus();
    auto* const box = view<QLineEdit>(form->txtName);
    const QPoint middle(34, box->height() / 2), end(150, middle.y());
    const auto enter = [&] {
        form->cmdOk.setFocus();
        QTest::mousePress(box, Qt::LeftButton, {}, middle);
        EXPECT_EQ(box->selectedText(), box->text());
    };
    enter();
    const QPointF there(end);
    QMouseEvent drag(QEvent::MouseMove, there, box->mapToGlobal(there), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(box, &drag);
    EXPECT_EQ(box->selectedText(), box->text().mid(box->cursorPositionAt(middle)));
    QTest::mouseRelease(box, Qt::LeftButton, {}, end);
    enter();
    QTest::mouseRelease(box, Qt::LeftButton, {}, middle);
    QTest::qWait(QApplication::doubleClickInterval());
    QTest::mouseClick(box, Qt::LeftButton, {}, middle);
    EXPECT_FALSE(box->hasSelectedText()) << "a second click places the caret";
    enter();
    QTest::keyClicks(box, "0.5");
    EXPECT_EQ(form->txtName.text.get(), "0.5");
}

} // namespace
} // namespace genutil
