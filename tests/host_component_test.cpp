#include "host/component_access.h"
#include "host/current_job.h"
#include "host/gauge_demo.h"
#include "host/job_schema.h"
#include "host/main_window.h"
#include "host/report_model.h"
#include "host/settings_file.h"
#include "host/window_visitor.h"
#include "support/host_with_component.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QTreeView>
#include <QWidget>

#include <fstream>

using namespace kestal;
using testing::HasSubstr;

namespace {

bool isEnabled(const QWidget& window, const char* command) {
    for (const QAction* action : window.findChildren<QAction*>())
        if (action->text() == command)
            return action->isEnabled();
    ADD_FAILURE() << "no command " << command;
    return false;
}

TEST_F(HostWithComponent, RegistersItsOwnCopyWhenNoneOrAnotherIsRegistered) {
    useRegistry(path("new/registry.ini"));
    { const ComponentAccess component(host_); }
    EXPECT_EQ(registeredServer(), ownLibraryPath());

    QFile registry(path("new/registry.ini"));
    ASSERT_TRUE(registry.open(QIODevice::ReadWrite));
    const QByteArray other =
        registry.readAll().replace(ownLibraryPath().c_str(), "/somewhere/else/libk_genutil.so") +
        "[foreign]\nx=1\n";
    registry.resize(0);
    registry.seek(0);
    registry.write(other);
    registry.close();
    ASSERT_NE(registeredServer(), ownLibraryPath());
    { const ComponentAccess component(host_); }
    EXPECT_EQ(registeredServer(), ownLibraryPath());
    ASSERT_TRUE(registry.open(QIODevice::ReadOnly));
    EXPECT_THAT(registry.readAll().toStdString(), HasSubstr("[foreign]\nx=1")) << "others' entries stay";
}

TEST_F(HostWithComponent, ARegistryThatCannotBeWrittenIsNamedWithTheRemedy) {
    useRegistry("/proc/kestal/registry.ini");
    try {
        const ComponentAccess component(host_);
        FAIL() << "registered in /proc";
    } catch (const ComponentError& error) {
        EXPECT_THAT(error.what(), HasSubstr("/proc/kestal"));
        EXPECT_THAT(error.what(), HasSubstr("Set K_GENUTIL_REGISTRY"));
    }
}

TEST_F(HostWithComponent, AFailureOfTheComponentComesWithItsDescriptionAndSource) {
    const ComponentAccess component(host_);
    const auto gauge = component.create<k_genutil::_cProgress>(k_genutil::classes::cProgress.progId);
    k_genutil::Text count("1");
    try {
        component.check(gauge->Gauge(count.inOut(), 1), "Advancing");
        FAIL() << "a gauge that was never opened advances";
    } catch (const ComponentError& error) {
        EXPECT_THAT(error.what(), HasSubstr("Advancing has failed: "));
        EXPECT_THAT(error.what(), HasSubstr("cProgress::"));
    }
    QFile log(host_->log.path());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_THAT(log.readAll().toStdString(), HasSubstr("cProgress::")) << "reported through errHandler";
    EXPECT_THROW(component.create<k_genutil::_cProgress>("k_genutil.cNothing"), ComponentError);
}

TEST_F(HostWithComponent, TheGaugeIsGoneAfterItsDemonstration) {
    const ComponentAccess component(host_);
    std::size_t mostWindows = 0;
    int last = -1;
    runGaugeDemo(component, 0, [&](int percent) {
        mostWindows = std::max(mostWindows, static_cast<std::size_t>(visibleWindows().size()));
        EXPECT_EQ(percent, ++last);
    });
    settle(50);
    EXPECT_EQ(last, 100);
    EXPECT_EQ(mostWindows, 1u);
    EXPECT_TRUE(visibleWindows().isEmpty());
}

TEST_F(HostWithComponent, AMaximizedViewerIsRememberedByTheProgramAndInTheSettings) {
    ComponentAccess component(host_);
    const WindowVisitor visitor([](QWidget& window) {
        window.showMaximized();
        settle(400);
    });
    component.viewFile(file("reports/b.log"), 25, true);
    EXPECT_EQ(visitor.visited(), 1);
    EXPECT_EQ(int16Of(host_->prog->value("FileViewState")), 2);
    EXPECT_FALSE(host_->prog->isChanged());
    EXPECT_EQ(setting("FileViewState"), "2");
    EXPECT_EQ(setting("File_View_Window").substr(0, 1), "2");
}

TEST_F(HostWithComponent, AFileToBeWipedIsGoneAndTheChoiceIsSpent) {
    ComponentAccess component(host_);
    std::ofstream(file("secret.log")) << "once\n";
    host_->prog->set("WipeAfterView", Variant(true));
    const WindowVisitor visitor([](QWidget&) {});
    component.viewFile(file("secret.log"), 25, true);
    EXPECT_FALSE(QFile::exists(path("secret.log")));
    EXPECT_FALSE(truthOf(host_->prog->value("WipeAfterView")));
}

TEST_F(HostWithComponent, TheMainWindowListsOpensAndTakesItsViewersAlong) {
    ComponentAccess component(host_);
    MainWindow main(host_, component);
    main.show();
    auto* list = main.findChild<QTreeView*>("lstReports");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->model()->rowCount(), 3);
    QStringList names;
    for (int row = 0; row < 3; ++row)
        names += list->model()->index(row, ReportModel::Name).data().toString();
    EXPECT_EQ(names.join('|'), "A.inv|b.log|c & d.txt");
    list->sortByColumn(ReportModel::Size, Qt::DescendingOrder);
    EXPECT_EQ(list->model()->index(0, ReportModel::Name).data().toString(), "b.log")
        << "by number, not by text";

    list->setCurrentIndex(list->model()->index(0, 0));
    emit list->activated(list->currentIndex());
    main.openReport(path("reports/c & d.txt"));
    settle(50);
    QStringList titles;
    for (const auto& window : visibleWindows())
        titles += window->windowTitle();
    titles.sort();
    EXPECT_EQ(titles, QStringList({"File Display: " + path("reports/c & d.txt"), "Kestal",
                          "Processing Log: " + path("reports/b.log")}));

    main.openFolder(path("no such folder"));
    EXPECT_EQ(main.findChild<QLineEdit*>("txtFolder")->text(), path("reports"))
        << "a refused folder changes nothing";
    EXPECT_EQ(list->model()->rowCount(), 3);
    EXPECT_TRUE(main.close());
    EXPECT_TRUE(visibleWindows().isEmpty());
}

TEST_F(HostWithComponent, TheInstantHelpChoiceOutlivesTheMainWindow) {
    ComponentAccess component(host_);
    for (const bool choice : {true, false}) {
        {
            MainWindow main(host_, component);
            main.show();
            main.instantHelpAction()->setChecked(choice);
            main.close();
        }
        EXPECT_EQ(Host(host_->paths).instantHelpOn, choice);
        const MainWindow again(host_, component);
        EXPECT_EQ(again.instantHelpAction()->isChecked(), choice);
    }
}

TEST_F(HostWithComponent, TheJobThatIsChosenInTheListIsOpenAlsoAtTheNextStart) {
    QDir().mkpath(path("jobs"));
    createJob(file("jobs/a.gdb"));
    createJob(file("jobs/Second job.old.gdb"));
    std::ofstream(file("jobs/bad.mdb")) << "text";
    ComponentAccess component(host_);
    {
        MainWindow main(host_, component);
        main.show();
        main.openJob(path("jobs/a.gdb"));
        EXPECT_EQ(main.windowTitle(), "a - Kestal");
        host_->attended = true; // a message box for the bad file would be visited, too
        const WindowVisitor visitor([](QWidget& list) {
            auto* grid = list.findChild<QTableView*>();
            auto* change = list.findChild<QPushButton*>("cmdChangeJob");
            ASSERT_TRUE(grid && change);
            ASSERT_EQ(grid->model()->rowCount(), 2);
            grid->setCurrentIndex(grid->model()->index(1, 0));
            settle(50);
            change->click();
        });
        main.listJobs();
        host_->attended = false;
        EXPECT_EQ(visitor.visited(), 1) << visitor.failure();
        EXPECT_EQ(main.windowTitle(), "Second job - Kestal");
        EXPECT_EQ(main.findChild<QPushButton*>("cmdProblems")->text(), "1 job file could not be read");
        EXPECT_EQ(setting("DataPath"), file("jobs/"));
        EXPECT_TRUE(isEnabled(main, "Options of this &job..."));
        main.openJob(path("jobs/bad.mdb"));
        EXPECT_EQ(main.windowTitle(), "Second job - Kestal") << "the earlier job stays";
    }
    const MainWindow again(host_, component);
    EXPECT_EQ(again.windowTitle(), "Second job - Kestal");
    QFile::remove(path("jobs/Second job.old.gdb"));
    const MainWindow without(host_, component);
    EXPECT_EQ(without.windowTitle(), "Kestal");
    EXPECT_FALSE(isEnabled(without, "Options of this &job..."));
    EXPECT_FALSE(isEnabled(without, "&Traverse header options..."));
    EXPECT_TRUE(isEnabled(without, "&Least-squares options..."));
    EXPECT_THAT(
        without.findChild<QTextEdit*>("txtJob")->toPlainText().toStdString(), HasSubstr("No job is open"));
}

TEST_F(HostWithComponent, TheProgramAnswersWithItsExitCodes) {
    const QString program = QCoreApplication::applicationDirPath() + "/kestal";
    if (!QFile::exists(program))
        GTEST_SKIP() << "kestal is not built";
    const std::tuple<QStringList, int, const char*> cases[] = {
        {{"--version"}, 0, "kestal 8.2"},
        {{"wiev"}, 2, "'wiev'"},
        {{"gauge", "--seconds", "never"}, 2, "'never'"},
        {{"tour", "--shots", "/proc/shots"}, 1, "/proc/shots"},
    };
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", path("data"));
    for (const auto& [arguments, exitCode, text] : cases) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        ASSERT_TRUE(process.waitForFinished(20000)) << arguments.join(' ').toStdString();
        EXPECT_EQ(process.exitCode(), exitCode) << arguments.join(' ').toStdString();
        EXPECT_THAT(process.readAll().toStdString(), HasSubstr(text));
    }
}

TEST_F(HostWithComponent, TheDisplaySettingsSetTheMarksOfTheViewMenuAndTheirSettings) {
    ComponentAccess component(host_);
    MainWindow main(host_, component);
    main.show();
    const auto mark = [&](const char* name) { return main.findChild<QAction*>(name); };
    const WindowVisitor visitor([](QWidget& window) {
        press<QCheckBox>(window, "chkTraverse");
        press<QCheckBox>(window, "chkScaleBar");
        press<QPushButton>(window, "cmdOK");
    });
    main.editDisplay();
    settle(20);
    EXPECT_FALSE(mark("mnuViewLinesTrav")->isChecked()) << visitor.failure();
    EXPECT_FALSE(mark("mnuViewScaleBar")->isChecked() || host_->marks.showsScaleBar());
    EXPECT_FALSE(Host(host_->paths).marks.isSet(Mark::Traverse));
    mark("mnuViewLinesTrav")->trigger();
    mark("mnuViewPtHts")->trigger();
    mark("mnuViewPtDesc")->trigger();
    EXPECT_FALSE(mark("mnuViewPtNum")->isChecked()) << "at most two labels";
    settle(20);
    EXPECT_TRUE(Host(host_->paths).marks.isSet(Mark::Descriptions));
}

TEST_F(HostWithComponent, ThePreferencesSayHowTheMainWindowStarts) {
    ComponentAccess component(host_);
    createJob(file("last.gdb"));
    MainWindow(host_, component).openJob(path("last.gdb"));
    for (const bool wanted : {true, false}) {
        host_->genPrefs->set("StartMaximized", Variant(wanted));
        host_->genPrefs->set("LoadLastJob", Variant(wanted));
        MainWindow main(host_, component);
        main.open();
        EXPECT_EQ(main.isMaximized(), wanted);
        EXPECT_EQ(main.windowTitle(), wanted ? "last - Kestal" : "Kestal");
    }
    host_->genPrefs->set("LoadLastJob", Variant(true));
}

TEST_F(HostWithComponent, PreferencesAreStoredAndUsedOrTheDialogStaysWhereTheyCannotBeStored) {
    ComponentAccess component(host_);
    MainWindow main(host_, component);
    main.show();
    const std::string settings = host_->paths.settings.toStdString();
    const auto contents = [&] {
        std::ifstream stream(settings);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    std::string problem;
    host_->showProblem = [&](const QString& text) { problem = text.toStdString(); };
    bool stays = false;
    const auto choose = [&](const char* kFactor) {
        const WindowVisitor visitor([&](QWidget& window) {
            type(window, "txtKfactor", kFactor);
            press<QCheckBox>(window, "chkInstantHelp");
            press<QPushButton>(window, "cmdOK");
            stays = window.isVisible();
            if (stays)
                press<QPushButton>(window, "cmdCancel");
        });
        main.editPreferences();
        EXPECT_EQ(visitor.visited(), 1) << visitor.failure();
    };
    choose("0.07");
    EXPECT_TRUE(problem.empty() && !stays) << problem;
    EXPECT_EQ(readSetting(settings, "Preferences", "KFactor", ""), "0.07");
    EXPECT_EQ(numberOf(host_->genPrefs->value("KFactor")), 0.07);
    EXPECT_TRUE(host_->instantHelpOn && main.instantHelpAction()->isChecked());
    EXPECT_FALSE(host_->openStore || QFile::exists(host_->paths.settings + ".work"));

    std::ofstream(settings, std::ios::app) << "no setting\n";
    const std::string damaged = contents();
    choose("0.21");
    EXPECT_THAT(problem, HasSubstr("must be a [section], key=value or a comment"));
    EXPECT_TRUE(stays && !QFile::exists(host_->paths.settings + ".work"));
    EXPECT_EQ(numberOf(host_->genPrefs->value("KFactor")), 0.07);
    EXPECT_EQ(contents(), damaged);
    QFile::remove(host_->paths.settings);
}

} // namespace
