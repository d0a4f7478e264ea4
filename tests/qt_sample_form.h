#pragma once

#include "hostif/form.h"
#include "platform/qt/form/bind.h"
#include "platform/qt/form/form_window.h"
#include "platform/qt/form/gauge_bar.h"
#include "platform/qt/form/report_view.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/text/text_view.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QtTest/QtTest>
#include <QVBoxLayout>
#include <QWindow>

#include <functional>
#include <memory>

namespace genutil::fake {

// One control of each kind.
struct SampleForm : Form {
    explicit SampleForm(Desktop& owner) : Form(owner, "frmSample", "Sample", {.width = 120, .height = 700}) {
        width = 6120;
        height = 6700;
        left = 1500;
        top = 1500;
        keyPreview = true;
        int order = 0;
        for (Control* control : {static_cast<Control*>(&txtName), static_cast<Control*>(&chkBold),
                 static_cast<Control*>(&optMetres), static_cast<Control*>(&cboUnit),
                 static_cast<Control*>(&cmdOk), static_cast<Control*>(&rtbText)})
            control->tabIndex = order++;
    }

    MenuItem mnu_File{*this, "mnu_File", "&File"};
    MenuItem mnu_Close{*this, "mnu_Close", "&Close", &mnu_File};
    Label lblTitle{*this, "lblTitle", "Title"};
    TextBox txtName{*this, "txtName", "T1"};
    CheckBox chkBold{*this, "chkBold", "&Bold"};
    OptionButton optMetres{*this, "optMetres", "&Metres"};
    ComboBox cboUnit{*this, "cboUnit"};
    Button cmdOk{*this, "cmdOk", "&OK"};
    FloodGauge pnlGauge{*this, "pnlGauge"};
    Tabs tabPages{*this, "tabPages", {"General", "Files"}};
    ReportText rtbText{*this, "rtbText"};
};

class SampleWindow : public FormWindow {
public:
    explicit SampleWindow(const std::shared_ptr<Form>& base) : FormWindow(base) {
        auto& form = static_cast<SampleForm&>(*base);
        addMenuBar();
        auto* column = new QVBoxLayout(contents());
        const auto add = [&](auto* view, auto& model) {
            column->addWidget(view);
            bind(view, model);
        };
        add(new QLabel(contents()), form.lblTitle);
        add(new QLineEdit(contents()), form.txtName);
        add(new QCheckBox(contents()), form.chkBold);
        add(new QRadioButton(contents()), form.optMetres);
        add(new QComboBox(contents()), form.cboUnit);
        add(new QPushButton(contents()), form.cmdOk);
        add(new GaugeBar(contents()), form.pnlGauge);
        add(new QTabWidget(contents()), form.tabPages);
        add(new ReportView(contents()), form.rtbText);
    }
};

inline FormWindow* openWindow() {
    for (QWidget* each : QApplication::topLevelWidgets())
        if (auto* found = dynamic_cast<FormWindow*>(each); found && found->form() && found->isVisible())
            return found;
    return nullptr;
}

// Closes the window as the window system does it for the user.
inline void pressCloseBox(QWidget* window) {
    QCloseEvent close;
    QSpontaneKeyEvent::setSpontaneous(&close);
    qApp->notify(window, &close);
}

class QtDesktopTest : public testing::Test {
protected:
    std::unique_ptr<Desktop> desktop = makeQtDesktop(
        {{"frmSample", [](const std::shared_ptr<Form>& sample) { return new SampleWindow(sample); }}});
    std::shared_ptr<SampleForm> form = std::make_shared<SampleForm>(*desktop);

    ~QtDesktopTest() override {
        form->unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    static FormWindow* window() { return openWindow(); }
    void show() {
        form->show(false);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    }
    template<class View>
    static View* view(const Control& control) {
        return static_cast<View*>(window()->viewOf(control));
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers held = {}) {
        QTest::keyClick(window()->windowHandle(), key, held);
    }
    // Acts once the loop that the next call starts is running.
    static void whenShown(std::function<void()> act) { QTimer::singleShot(0, qApp, std::move(act)); }
};

} // namespace genutil::fake
