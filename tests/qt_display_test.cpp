#include "display/frm_display.h"
#include "platform/qt/windows/form_views.h"
#include "qt_sample_form.h"
#include "support/display_world.h"

namespace genutil {
namespace {

class DisplayWindowTest : public testing::Test {
protected:
    fake::DisplayWorld world;
    std::unique_ptr<Desktop> desktop = makeQtDesktop(standardFormViews());
    Component component{*desktop, world.files, world.host};
    std::shared_ptr<frmDisplay> form = std::make_shared<frmDisplay>(component);
    FormWindow* window = nullptr;

    void SetUp() override {
        form->MenuIhelp = true;
        form->chkPoints(6).enabled = false;
        form->allowScaleBar();
        form->Form_Setup("");
        window = fake::openWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    ~DisplayWindowTest() override {
        form->unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QRect placeOf(const Control& control) {
        QWidget* const view = window->viewOf(control);
        return {view->mapTo(window, QPoint()), view->size()};
    }
};

TEST_F(DisplayWindowTest, TabGoesRoundAndSpaceTogglesOnceHoweverLongItIsHeld) {
    std::map<int, Control*> order;
    for (Control* control : form->controls())
        if (control->canFocus())
            order[control->tabIndex] = control;
    for (const auto& [index, control] : order) {
        EXPECT_EQ(form->activeControl(), control) << control->name();
        auto* const box = dynamic_cast<CheckBox*>(control);
        for (const bool expected : {true, false})
            if (box && box != &form->chkPoints(0)) {
                QWindow* const target = window->windowHandle();
                QTest::keyPress(target, Qt::Key_Space);
                QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, {}, QStringLiteral(" "), true);
                QCoreApplication::sendEvent(target, &held);
                QTest::keyRelease(target, Qt::Key_Space);
                EXPECT_EQ(box->ticked, expected) << box->name();
                EXPECT_EQ(static_cast<QCheckBox*>(window->viewOf(*box))->isChecked(), expected);
            }
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    }
    form->boxes[8].setFocus(); // as Enter has it done
    EXPECT_TRUE(window->testAttribute(Qt::WA_KeyboardFocusChange)) << "the focus is not seen";
    QTest::keyClick(window->windowHandle(), Qt::Key_O, Qt::AltModifier);
    QTest::qWait(150); // an access key presses its button for a moment
    EXPECT_TRUE(form->OKPressed && !form->isShown());
}

TEST_F(DisplayWindowTest, EverySampleStandsBesideItsBoxInItsColourAndStyleOnDarkGround) {
    const QImage shown = window->grab().toImage();
    const int ratio = int(shown.devicePixelRatio());
    for (const DisplayBox& each : displayBoxes()) {
        if (!each.legend.control)
            continue;
        const QRect sample = placeOf(*form->findControl(each.legend.control));
        EXPECT_LE(std::abs(sample.center().y() - placeOf(*form->findControl(each.control)).center().y()), 1);
        const auto [red, green, blue] = each.legend.color;
        const QRect line = sample.adjusted(8, 4, -8, -4); // without the picture's edge
        int inked = 0;
        for (int y = line.top() * ratio; y <= line.bottom() * ratio; ++y)
            for (int x = line.left() * ratio; x < (line.right() + 1) * ratio; ++x) {
                const QColor dot = shown.pixelColor(x, y);
                inked += dot == QColor(red, green, blue);
                EXPECT_TRUE(dot == QColor(red, green, blue) || dot == Qt::black) << each.control;
            }
        const int whole = line.width() * each.legend.width * ratio * ratio;
        if (each.legend.style == LineStyle::Solid)
            EXPECT_EQ(inked, whole) << each.control;
        else
            EXPECT_TRUE(inked > whole / 4 && inked < whole * 3 / 4) << each.control << inked;
    }
    for (const QWidget* part : window->findChildren<QWidget*>())
        EXPECT_GE(part->width(), part->minimumSizeHint().width()) << qPrintable(part->objectName());
    EXPECT_LE(window->height(), (768 - 2 * 20) / 2); // also with its title bar at double scale
}

TEST_F(DisplayWindowTest, TheMouseOverABoxCountsAsOverItsFrame) {
    const auto helpAt = [&](const Control& control) {
        world.host.log.clear();
        const QPoint place = placeOf(control).center();
        QTest::mouseMove(window->windowHandle(), place);
        QCoreApplication::processEvents();
        return world.host.log.empty() ? std::string() : world.host.log.back();
    };
    EXPECT_EQ(helpAt(form->chkPoints(1)), "ShowControlHelp fraPoints");
    EXPECT_EQ(helpAt(form->chkPoints(6)), "ShowControlHelp fraPoints") << "disabled";
    EXPECT_EQ(helpAt(form->boxes[8]), "ShowControlHelp FraLines");
    EXPECT_EQ(helpAt(form->samples[4]), "ShowControlHelp Picture1");
    EXPECT_EQ(helpAt(form->lblBearing), "ShowControlHelp Picture1");
    EXPECT_EQ(helpAt(form->chkScaleBar), "ShowControlHelp chkScaleBar");
    EXPECT_EQ(helpAt(form->pnlHelp), "ShowFormHelp frmDisplay");
}

} // namespace
} // namespace genutil
