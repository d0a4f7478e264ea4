#include "host/component_access.h"
#include "host/current_job.h"
#include "host/gauge_demo.h"
#include "host/job_schema.h"
#include "host/main_window.h"
#include "host/report_model.h"
#include "host/settings_file.h"
#include "host/window_visitor.h"

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

// The host with the component's library beside the test program. The component keeps the services of the
// first host that it meets, so all tests share one.
class HostWithComponent : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = new QTemporaryDir;
        HostPaths paths;
        paths.settings = path("kestal.ini");
        paths.log = path("kestal.log");
        paths.help = path("help.txt");
        paths.samples = path("reports");
        QDir().mkpath(paths.samples);
        std::ofstream(file("help.txt")) << "[1800] Viewer topic\nText\n";
        std::ofstream(file("reports/b.log")) << std::string(500, 'b');
        std::ofstream(file("reports/A.inv")) << "short\n";
        std::ofstream(file("reports/c & d.txt")) << "text\n";
        host_ = std::make_shared<Host>(paths);
        host_->attended = false;
    }
    static void TearDownTestSuite() {
        host_.reset();
        delete folder_;
    }
    void SetUp() override { useRegistry(path("registry.ini")); }

    static QString path(const QString& name) { return folder_->filePath(name); }
    static std::string file(const char* name) { return path(name).toStdString(); }
    static void useRegistry(const QString& name) { qputenv("K_GENUTIL_REGISTRY", name.toLocal8Bit()); }
    static std::string registeredServer() {
        const std::string clsid = k_genutil::guidText(k_genutil::classes::cProgress.clsid);
        return k_genutil::registryValue("class " + clsid, "server", REGDB_E_CLASSNOTREG);
    }
    static std::string setting(const char* key) {
        return readSetting(host_->paths.settings.toStdString(), "Kestal", key, "absent");
    }

    static QTemporaryDir* folder_;
    static HostPtr host_;
};

QTemporaryDir* HostWithComponent::folder_ = nullptr;
HostPtr HostWithComponent::host_;

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

// ---- least-squares options

// What a key at the keyboard does; a decimal point is the one of the user's locale.
void type(QWidget& window, const char* box, QString number) {
    auto* edit = window.findChild<QLineEdit*>(box);
    ASSERT_TRUE(edit) << box;
    edit->setFocus();
    edit->selectAll();
    number.replace('.', QLocale::system().decimalPoint());
    for (const QChar c : number) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, c);
        QApplication::sendEvent(edit, &press);
    }
}
template<class Button>
void press(QWidget& window, const char* name) {
    auto* button = window.findChild<Button*>(name);
    ASSERT_TRUE(button) << name;
    button->click();
}

std::string answerOf(const QString& job, const char* sql) {
    QProcess program;
    program.start("sqlite3", {job, sql});
    EXPECT_TRUE(program.waitForFinished(10000));
    return program.readAll().trimmed().toStdString();
}

TEST_F(HostWithComponent, LeastSquaresOptionsAreStoredWhereTheyWereEdited) {
    createJob(file("options.gdb"));
    ComponentAccess component(host_);
    CurrentJob job;
    job.open(path("options.gdb"));
    const auto edit = [&](std::int16_t mode, std::int16_t dataMode, const char* seconds) {
        const WindowVisitor visitor([&](QWidget& window) {
            type(window, "txtSDAzimuth", seconds);
            press<QCheckBox>(window, "chkMatrixDump");
            emit window.findChild<QComboBox*>("cboChiSquared")->activated(5);
            press<QPushButton>(window, "cmdOK");
        });
        EXPECT_TRUE(component.editLsOptions(mode, dataMode, job)) << "mode " << mode;
        EXPECT_EQ(visitor.visited(), 1) << visitor.failure();
    };
    edit(ls_modes::JobAndSet, 0, "2.25");
    edit(ls_modes::Page, 4, "3.5");
    edit(ls_modes::Page, 4, "3.75");
    EXPECT_EQ(
        answerOf(path("options.gdb"),
            "SELECT FileType, AzimuthSD, typeof(AzimuthSD), Dump <> 0, ConfLevelChiSquared, Iterations, "
            "Corrections, ConvLimitH, VectorsCentV, SaveDBPoints FROM DataHeader"),
        "|2.25|real|1|999.0|10|1|0.0005|0.0|\n1|3.75|real|0|999.0|10|1|0.0005|0.0|");
    EXPECT_EQ(host_->lsOptions->text("AzimuthSD"), "10") << "a job's options are no preferences";

    edit(ls_modes::Preferences, 0, "4.5");
    Host later(host_->paths);
    EXPECT_EQ(numberOf(later.lsOptions->value("AzimuthSD")), 4.5);
    EXPECT_EQ(later.lsOptions->value("ConfLevelChiSquared").vt, VT_R4);
    EXPECT_EQ(later.lsOptions->text("ConfLevelMDE"), "9980");
    EXPECT_EQ(host_->lsOptionDefaults->text("AzimuthSD"), "10") << "the factory's defaults stay";
    host_->takeLsOptions(host_->lsOptionDefaults.get());
}

TEST_F(HostWithComponent, PointSaveOptionsGoToTheJobOrElseToThePreferences) {
    createJob(file("points.gdb"));
    ComponentAccess component(host_);
    CurrentJob job;
    for (const char* name : {"", "points.gdb"}) {
        if (*name)
            job.open(path(name));
        const WindowVisitor visitor([](QWidget& window) {
            press<QCheckBox>(window, "chkPtEntry");
            press<QRadioButton>(window, "optPointEntry2");
            press<QPushButton>(window, "cmdOK");
        });
        EXPECT_TRUE(component.editPointSave(job));
        EXPECT_EQ(int16Of(host_->lsOptions->value("SavePtEntryOpt")), 2);
    }
    EXPECT_EQ(answerOf(path("points.gdb"), "SELECT SaveDBPoints <> 0, SavePtEntry <> 0, SavePtEntryFixed, "
                                           "SavePtEntryOpt, AzimuthSD FROM DataHeader"),
        "1|1|0|2|");
    host_->takeLsOptions(host_->lsOptionDefaults.get());
}

TEST_F(HostWithComponent, OptionsThatCannotBeStoredStayOnTheScreen) {
    createJob(file("locked.gdb"));
    CurrentJob job;
    job.open(path("locked.gdb"));
    QProcess other;
    other.start("sqlite3", {path("locked.gdb")});
    other.write("BEGIN IMMEDIATE; SELECT 'locked';\n");
    ASSERT_TRUE(other.waitForReadyRead(10000));
    ComponentAccess component(host_);
    bool stays = false;
    const WindowVisitor visitor([&](QWidget& window) {
        type(window, "txtSDAzimuth", "7");
        press<QPushButton>(window, "cmdOK");
        stays = window.isVisible();
        other.closeWriteChannel();
        other.waitForFinished(10000);
        press<QPushButton>(window, "cmdOK");
    });
    EXPECT_TRUE(component.editLsOptions(ls_modes::JobAndSet, 0, job));
    EXPECT_TRUE(stays) << visitor.failure();
    EXPECT_EQ(answerOf(path("locked.gdb"), "SELECT AzimuthSD FROM DataHeader"), "7.0");
}

TEST_F(HostWithComponent, OptionsOfAJobOfAnEarlierVersionAreShownAndNotStored) {
    std::ifstream sample(KESTAL_SAMPLES "/jobs/Smith Farm.mdb", std::ios::binary);
    std::string job(std::istreambuf_iterator<char>(sample), {});
    // An empty table of it becomes the one of the options: the name, two bytes a character, makes room for
    // the other, most of which has one.
    const std::string name("H\0e\0i\0g\0h\0t\0s\0", 14), replacement("\xFF\xFE"
                                                                     "DataHeade\0r\0",
                                                             14);
    ASSERT_NE(job.find(name), std::string::npos);
    std::ofstream(file("earlier.mdb"), std::ios::binary) << job.replace(job.find(name), 14, replacement);
    CurrentJob current;
    current.open(path("earlier.mdb"));
    ComponentAccess component(host_);
    bool stays = false;
    const WindowVisitor visitor([&](QWidget& window) {
        // The question whether to abandon the changes; the window closes whatever the answer.
        QTimer::singleShot(500, qApp, [] { QApplication::activeModalWidget()->close(); });
        type(window, "txtSDAzimuth", "7");
        press<QPushButton>(window, "cmdOK");
        stays = window.isVisible() && window.findChild<QLineEdit*>("txtSDAzimuth")->text().startsWith('7');
    });
    EXPECT_FALSE(component.editLsOptions(ls_modes::JobAndSet, 0, current));
    EXPECT_TRUE(stays) << visitor.failure();
    std::ifstream log(file("kestal.log"));
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(log), {}),
        HasSubstr("The database or the record set is read-only  '" + file("earlier.mdb") +
                  "' is read only: Jet databases are not written | In (Form) LS_Options::Sub cmdOK_Click"));
}

TEST_F(HostWithComponent, OptionsAreStoredAsNumbersWhereTheDecimalSeparatorIsAComma) {
    if (QLocale::system().decimalPoint() == ",")
        return; // this is that run
    QProcess again;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "de_DE.UTF-8");
    again.setProcessEnvironment(environment);
    again.setProcessChannelMode(QProcess::MergedChannels);
    again.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=*Options*"});
    ASSERT_TRUE(again.waitForFinished(60000));
    EXPECT_EQ(again.exitCode(), 0) << again.readAll().toStdString();
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

TEST_F(HostWithComponent, PreferencesAreStoredAndUsedOrUsedAloneWhereTheyCannotBeStored) {
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
    const auto choose = [&](const char* kFactor) {
        const WindowVisitor visitor([&](QWidget& window) {
            type(window, "txtKfactor", kFactor);
            press<QCheckBox>(window, "chkInstantHelp");
            press<QPushButton>(window, "cmdOK");
        });
        main.editPreferences();
        EXPECT_EQ(visitor.visited(), 1) << visitor.failure();
    };
    choose("0.07");
    EXPECT_EQ(problem, "");
    EXPECT_EQ(readSetting(settings, "Preferences", "KFactor", ""), "0.07");
    EXPECT_EQ(numberOf(host_->genPrefs->value("KFactor")), 0.07);
    EXPECT_TRUE(host_->instantHelpOn && main.instantHelpAction()->isChecked());
    EXPECT_FALSE(host_->openStore || QFile::exists(host_->paths.settings + ".work"));

    std::ofstream(settings, std::ios::app) << "no setting\n";
    const std::string damaged = contents();
    choose("0.21");
    EXPECT_THAT(problem, HasSubstr("must be a [section], key=value or a comment"));
    EXPECT_EQ(numberOf(host_->genPrefs->value("KFactor")), 0.21);
    EXPECT_EQ(contents(), damaged);
    QFile::remove(host_->paths.settings);
}

} // namespace
