#include "platform/qt/windows/form_views.h"
#include "preferences/frm_defaults.h"
#include "qt_sample_form.h"
#include "support/ls_world.h"

#include <QTabWidget>

namespace genutil {
namespace {

TEST(PreferencesWindow, IsUsedByKeyboardAlone) {
    fake::LSWorld world;
    const std::unique_ptr<Desktop> desktop = makeQtDesktop(standardFormViews());
    Component component{*desktop, world.files, world.host};
    const auto form = std::make_shared<frmDefaults>(component);
    form->prog = world.prog;
    for (const char* const member : {"DataPath", "ListFolder"})
        form->prog->write(member, "/data/");
    form->LSOptPrefs = world.options;
    form->genPrefs = std::make_shared<fake::FakeRecord>(
        std::map<std::string, Value, std::less<>>{{"StartMaximized", true}, {"ListGroup", std::int16_t{1}},
            {"DefaultEditor", ""}, {"MultiplePointEntry", false}, {"KFactor", 0.14},
            {"KeepBackupsInRecycleBin", true}, {"ShowExtension", true}, {"LoadLastJob", true}});
    form->Form_Setup("");
    FormWindow* const window = fake::openWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    const auto press = [&](int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window->windowHandle(), Qt::Key(key), modifiers);
    };
    const auto viewOf = [&](const Control& control) { return window->viewOf(control); };

    EXPECT_EQ(QApplication::focusWidget(), viewOf(form->optStartSize[0]));
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_TRUE(form->optStartSize[1].selected && !form->optStartSize[0].selected);
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_FALSE(form->chkLoadLast.ticked) << "once inverted, not twice";
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(form->tabPreferences.current.get(), 1);
    EXPECT_TRUE(viewOf(form->txtKfactor)->isVisible() && !viewOf(form->chkLoadLast)->isVisible());
    viewOf(form->txtKfactor)->setFocus();
    press(Qt::Key_Delete, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "0.2");
    press(Qt::Key_Enter);
    EXPECT_EQ(world.host.log.back(), "NextControl");
    press(Qt::Key_Home);
    EXPECT_EQ(QApplication::focusWidget(), viewOf(form->optStartSize[0]));
    EXPECT_LT(window->height(), 768 - 40);
    press(Qt::Key_End);
    press(Qt::Key_Return);
    EXPECT_TRUE(form->OKPressed && !form->isLoaded());
    EXPECT_EQ(form->genPrefs->read("KFactor").toDouble(), 0.2);
}

} // namespace
} // namespace genutil
