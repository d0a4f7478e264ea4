#include "host/current_job.h"
#include "host/gauge_demo.h"
#include "host/host.h"
#include "host/job_schema.h"
#include "host/ls_option_set.h"
#include "host/main_form_object.h"
#include "host/main_window.h"
#include "host/window_visitor.h"
#include "support/host_with_component.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include <filesystem>

using namespace kestal;
using testing::HasSubstr;

// The options of the least-squares adjustment, from the host to the file and back.
namespace {

std::string answerOf(const QString& job, const char* sql) {
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start("sqlite3", {job, sql});
    EXPECT_TRUE(program.waitForFinished(10000));
    return program.readAll().trimmed().toStdString();
}

// Memory is counted in the toolkit's objects: one window that stays is dozens of them.
TEST_F(HostWithComponent, EveryDialogLeavesNothingBehindInAHostWithAndWithoutARunningLoop) {
    createJob(file("leak.gdb"));
    ComponentAccess component(host_);
    CurrentJob job;
    job.open(path("leak.gdb"));
    MainWindow main(host_, component);
    const auto mainForm = makeMainFormObject(host_, main, *main.centralWidget());
    QTimer closing;
    closing.callOnTimeout([] {
        if (QWidget* const front = QApplication::activeModalWidget())
            front->close();
    });
    JobObject chosen;
    const std::function<void()> dialogs[] = {
        [&] { component.viewFile(file("reports/b.log"), 25, true); },
        [&] { component.listJobs(chosen, job, mainForm.get()); },
        [&] { component.editLsOptions(ls_modes::Preferences, 0, job); },
        [&] { component.editPointSave(job); },
        [&] { component.editPreferences(job, mainForm.get()); },
        [&] { component.editDisplay(job, mainForm.get()); },
        [&] { runGaugeDemo(component, 0); },
    };
    const auto held = [] {
        const auto files = std::filesystem::directory_iterator("/proc/self/fd");
        return std::pair(QApplication::allWidgets().size(), std::distance(begin(files), end(files)));
    };
    // By hand, a thousand rounds of each: GENUTIL_ROUNDS=1000.
    const int rounds = std::max(5, qEnvironmentVariableIntValue("GENUTIL_ROUNDS"));
    for (const bool runsLoop : {false, true})
        for (const auto& dialog : dialogs) {
            const auto open = [&](int times) {
                closing.start(0);
                for (int i = 0; i < times; ++i)
                    dialog();
                closing.stop();
            };
            open(2); // what is made on first use
            const auto before = held();
            if (runsLoop)
                QTimer::singleShot(0, qApp, [&] {
                    open(rounds);
                    QCoreApplication::exit();
                });
            runsLoop ? void(QApplication::exec()) : open(rounds);
            EXPECT_LE(held(), before) << "dialog " << &dialog - dialogs << ", loop " << runsLoop;
        }
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
    edit(ls_modes::Page, 4, "3.5");
    answerOf(path("options.gdb"), "INSERT INTO DataHeader (FileType) VALUES ('damaged')");
    edit(ls_modes::JobAndSet, 0, "2.25"); // the job's, though a page's record stands before it
    edit(ls_modes::Page, 4, "3.75");
    EXPECT_EQ(
        answerOf(path("options.gdb"),
            "SELECT FileType, AzimuthSD, typeof(AzimuthSD), Dump <> 0, ConfLevelChiSquared, Iterations, "
            "Corrections, ConvLimitH, VectorsCentV, SaveDBPoints FROM DataHeader"),
        "1|3.75|real|0|999.0|10|1|0.0005|0.0|\ndamaged||null|||||||\n|2.25|real|1|999.0|10|1|0.0005|0.0|");
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

TEST_F(HostWithComponent, AConstraintFactorThatDoesNotFitIsRefusedBeforeARecordIsWritten) {
    createJob(file("factor.gdb"));
    CurrentJob job;
    job.open(path("factor.gdb"));
    ComponentAccess component(host_);
    bool stays = false;
    const WindowVisitor visitor([&](QWidget& window) {
        type(window, "txtConstrFactor", "2147483648");
        press<QPushButton>(window, "cmdOK");
        stays = window.isVisible();
        type(window, "txtConstrFactor", "2147483647");
        press<QPushButton>(window, "cmdOK");
    });
    std::string records;
    host_->showProblem = [&](const QString&) {
        records = answerOf(path("factor.gdb"), "SELECT count(*) FROM DataHeader");
    };
    EXPECT_TRUE(component.editLsOptions(ls_modes::JobAndSet, 0, job)) << visitor.failure();
    host_->showProblem = {};
    EXPECT_TRUE(stays);
    EXPECT_EQ(records, "0");
    EXPECT_EQ(answerOf(path("factor.gdb"), "SELECT SDConstrFactor FROM DataHeader"), "2147483647");
}

TEST_F(HostWithComponent, OptionsThatAnotherProgramHasChangedAreWrittenOverOnlyWhenTheUserInsists) {
    createJob(file("shared.gdb"));
    CurrentJob job;
    job.open(path("shared.gdb"));
    ComponentAccess component(host_);
    const auto edit = [&](const char* meanwhile, const char* seconds, const char* reason) {
        bool stays = false;
        const WindowVisitor visitor([&](QWidget& window) {
            EXPECT_EQ(answerOf(path("shared.gdb"), meanwhile), "");
            type(window, "txtSDAzimuth", seconds);
            press<QPushButton>(window, "cmdOK");
            stays = window.isVisible();
            press<QPushButton>(window, "cmdOK");
        });
        EXPECT_TRUE(component.editLsOptions(ls_modes::JobAndSet, 0, job)) << visitor.failure();
        EXPECT_TRUE(stays) << meanwhile;
        std::ifstream log(file("kestal.log"));
        EXPECT_THAT(std::string(std::istreambuf_iterator<char>(log), {}), HasSubstr(reason));
    };
    edit("INSERT INTO DataHeader (AzimuthSD) VALUES (6)", "7",
        "Another program has added a record to the table");
    edit("UPDATE DataHeader SET DisPPM = 6", "8", "The field DisPPM of record 1 of the table");
    edit("DELETE FROM DataHeader", "9", "has been deleted by another program");
    EXPECT_EQ(answerOf(path("shared.gdb"), "SELECT AzimuthSD, DisPPM FROM DataHeader"), "9.0|10.0");
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
        QTimer::singleShot(500, qApp, [] {
            qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->button(QMessageBox::Yes)->click();
        });
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

} // namespace
