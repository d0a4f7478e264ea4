#include "fileview/report_print.h"
#include "hostif/error.h"
#include "platform/qt/print/print_dialog.h"
#include "platform/qt/print/qt_printer.h"
#include "support/file_folder.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrinterInfo>
#include <QProcess>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace genutil;
using testing::HasSubstr;

namespace {

// A scheduler of its own with a printer "office", whose jobs wait in the folder "spool", and one that takes
// none.
struct Scheduler : testing::Test {
    void SetUp() override {
        const QString program = QStandardPaths::findExecutable("cupsd", {"/usr/sbin", "/usr/bin"});
        if (program.isEmpty())
            GTEST_SKIP() << "cupsd is missing (package cups-daemon)";
        for (const char* name : {"root/ppd", "state", "cache", "spool/tmp"})
            std::filesystem::create_directories(folder.path / name);
        std::filesystem::copy(GENUTIL_TEST_DATA "/office.ppd", folder.path / "root/ppd");
        const std::string at = folder.path;
        // The library reads once where the scheduler is.
        static const fake::FileFolder first;
        const std::string socket = first / "socket";
        first.make("lpoptions", "Default office Duplex=DuplexNoTumble Resolution=300dpi\n");
        qputenv("CUPS_SERVERROOT", first.path.c_str());
        folder.make("root/files.conf", "ServerRoot " + at + "/root\nStateDir " + at + "/state\nCacheDir " +
                                           at + "/cache\nRequestRoot " + at + "/spool\nTempDir " + at +
                                           "/spool/tmp\nAccessLog " + at + "/log\nPageLog " + at +
                                           "/log\nErrorLog " + at + "/log\nFileDevice Yes\n");
        folder.make(
            "root/cupsd.conf", "DirtyCleanInterval 0\nListen " + socket +
                                   "\nBrowsing Off\n<Location />\nAllow all\n"
                                   "</Location>\n<Policy default>\n<Limit All>\n</Limit>\n</Policy>\n");
        std::filesystem::copy(GENUTIL_TEST_DATA "/office.ppd", folder.path / "root/ppd/closed.ppd");
        folder.make("root/printers.conf",
            "<Printer closed>\nDeviceURI file:///dev/null\nAccepting No\n</Printer>\n"
            "<DefaultPrinter office>\nInfo Office\nDeviceURI file:///dev/null\n"
            "State Stopped\nAccepting Yes\n</DefaultPrinter>\n");
        qputenv("CUPS_SERVER", socket.c_str());
        scheduler.setProcessChannelMode(QProcess::MergedChannels);
        scheduler.start(program, {"-f", "-c", QString::fromStdString(folder / "root/cupsd.conf"), "-s",
                                     QString::fromStdString(folder / "root/files.conf")});
        QElapsedTimer waiting;
        for (waiting.start(); QPrinterInfo::availablePrinterNames().isEmpty();) {
            ASSERT_LT(waiting.elapsed(), 20'000)
                << scheduler.readAll().toStdString() << folder.contents("log");
            scheduler.waitForFinished(50);
        }
        printer = makeSystemPrinter();
    }
    void TearDown() override { stop(); }
    void stop() {
        scheduler.terminate();
        scheduler.waitForFinished();
    }

    // With what it asks for, and what it prints.
    std::string job(const char* number) const { return folder.contents(std::string("spool/c") + number); }
    std::string words(const char* number) const {
        QProcess process;
        process.start("pdftotext",
            {"-bbox", QString::fromStdString(folder / (std::string("spool/d") + number + "-001")), "-"});
        process.waitForFinished();
        return process.readAllStandardOutput().toStdString();
    }
    PrintOutcome print(const PageSettings& page, const PrintProgress& goOn) {
        printer->setPage(page);
        const auto document = text::TextDocument::fromBytes("Traverse Summary\fPoints\n");
        const ReportPages pages(*printer, {.lines = allLines(document),
                                              .header = "Kestal",
                                              .font = reportFont(true),
                                              .orientation = page.orientation,
                                              .title = "NET\n.SUM"});
        return printReport(*printer, pages, {}, goOn);
    }
    static bool always(std::size_t, std::size_t) { return true; }

    fake::FileFolder folder;
    QProcess scheduler;
    std::unique_ptr<SystemPrinter> printer;
};

TEST_F(Scheduler, TakesTheReportWhereItBelongsOnTheSheetWithAllItsSettings) {
    EXPECT_EQ(printer->device().name, "office");
    ASSERT_EQ(printer->installed().size(), 3u) << "two printers and the PDF file";
    // The margins that cannot be printed on are 18 points at the left and 40 at the top; the one is taken
    // from the wanted margin, the other is more than that.
    print({}, always);
    EXPECT_EQ(printer->physicalOffsetX() * printer->twipsPerPixelX(), 18 * 20);
    EXPECT_THAT(words("00001"), HasSubstr("<page width=\"595.000000\" height=\"842.000000\">"));
    EXPECT_THAT(words("00001"), HasSubstr("xMin=\"41.3"));
    EXPECT_THAT(words("00001"), HasSubstr("yMin=\"53.79"));
    // The user's own choices, where the report has none.
    for (const char* own : {"DuplexNoTumble", "300dpi"})
        EXPECT_THAT(job("00001"), HasSubstr(own));

    const PageSettings all{.orientation = PageOrientation::Landscape,
        .paperSize = 8,
        .paperBin = 259,
        .colorMode = 2,
        .duplex = 2,
        .quality = 1200};
    print(all, always);
    EXPECT_EQ(printer->page(), all);
    EXPECT_EQ(printer->physicalOffsetY() * printer->twipsPerPixelY(), 36 * 20) << "of either side";
    EXPECT_THAT(words("00002"), HasSubstr("<page width=\"1191.000000\" height=\"842.000000\">"));
    for (const char* part :
        {"NET.SUM", "A3", "PhotoTray", "RGB", "two-sided-short-edge", "printer-resolution", "1200dpi"})
        EXPECT_THAT(job("00002"), HasSubstr(part));
    EXPECT_THAT(job("00002"), Not(HasSubstr("DuplexNoTumble")));
    // What the printer has not.
    printer->setPage({.paperSize = 5, .paperBin = 2, .quality = 2400});
    EXPECT_EQ(printer->page(), (PageSettings{.paperSize = 1}));
}

TEST_F(Scheduler, GetsNothingOfACancelledReportAndItsAbsenceIsAnErrorThatNamesThePrinter) {
    print({}, [](std::size_t done, std::size_t) { return done == 0; });
    print({.orientation = PageOrientation::Landscape}, always);
    EXPECT_NE(job("00001"), "");
    EXPECT_EQ(job("00002"), "") << "the cancelled one";
    const auto failure = [&] {
        try {
            print({}, always);
        } catch (const Error& error) {
            return error.number() == errors::DeviceError ? std::string(error.what()) : "another error";
        }
        return std::string("success");
    };
    printer->choose({"closed", "", ""});
    EXPECT_THAT(failure(), HasSubstr("printer 'closed'"));
    printer->choose({"cellar", "", ""});
    EXPECT_THAT(failure(), HasSubstr("printer 'cellar' has not accepted the document: it is not there"));
    printer->choose({"office", "", ""});
    // One that hangs is not waited for without end, nor so long again.
    QElapsedTimer waiting;
    waiting.start();
    ::kill(pid_t(scheduler.processId()), SIGSTOP);
    EXPECT_THAT(failure(), HasSubstr("printer 'office' has not accepted the document: the scheduler"));
    EXPECT_EQ(printer->installed().size(), 1u) << "the PDF file";
    EXPECT_LT(waiting.elapsed(), 9'000);
    ::kill(pid_t(scheduler.processId()), SIGCONT);
    stop();
    EXPECT_THAT(failure(), HasSubstr("printer 'office'"));
}

TEST_F(Scheduler, IsAskedForThroughADialogThatKeepsAndGivesBackEverySetting) {
    const std::string report = folder.make("a.log", "text");
    PrintDialog dialog{.document = report,
        .device = {"office", "", ""},
        .page = {.orientation = PageOrientation::Landscape,
            .paperBin = 4,
            .colorMode = 1,
            .duplex = 3,
            .quality = -4,
            .copies = 3},
        .toPage = 5,
        .maxPage = 5,
        .flags = printflags::InformationContext + printflags::Selection};
    const PrintDialog given = dialog;
    const auto answer = [&](const std::function<void(QDialog&)>& user) {
        QTimer::singleShot(0, [user] {
            auto* const window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(window);
            user(*window);
        });
        return printer->ask(nullptr, dialog);
    };
    EXPECT_FALSE(answer([](QDialog& window) { QTest::keyClick(&window, Qt::Key_Escape); }));
    EXPECT_EQ(dialog.page, given.page);
    EXPECT_TRUE(answer([](QDialog& window) { QTest::keyClick(&window, Qt::Key_Return); }));
    EXPECT_EQ(dialog.page, given.page);
    EXPECT_TRUE(answer([](QDialog& window) {
        for (const char* name : {"size", "source", "sides", "color", "quality"})
            window.findChild<QComboBox*>(name)->setCurrentIndex(1);
        window.findChild<QComboBox*>("orientation")->setCurrentIndex(0);
        window.findChild<QSpinBox*>("copies")->setValue(2);
        QTest::keyClick(&window, Qt::Key_Return);
    }));
    EXPECT_EQ(dialog.page,
        (PageSettings{
            .paperSize = 8, .paperBin = 7, .colorMode = 1, .duplex = 1, .quality = -1, .copies = 2}));
    EXPECT_EQ(dialog.flags, given.flags);

    const std::string target = folder.make("report.pdf", "earlier");
    EXPECT_TRUE(answer([&](QDialog& window) {
        window.findChild<QSpinBox*>("from")->setValue(2);
        window.findChild<QComboBox*>("orientation")->setCurrentIndex(1);
        auto* const printers = window.findChild<QComboBox*>("printer");
        printers->setCurrentIndex(printers->findText("PDF file"));
        auto* const file = window.findChild<QLineEdit*>("file");
        EXPECT_EQ(file->text().toStdString(), report + ".pdf");
        file->setText(QString::fromStdString(report));
        QTimer::singleShot(0, [] {
            qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->button(QMessageBox::Ok)->click();
        });
        window.accept();
        EXPECT_NE(window.result(), QDialog::Accepted) << "the report itself";
        file->setText(QString::fromStdString(target));
        for (const auto answered : {QMessageBox::No, QMessageBox::Yes}) {
            QTimer::singleShot(0, [answered] {
                qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->button(answered)->click();
            });
            window.accept();
            EXPECT_EQ(window.result() == QDialog::Accepted, answered == QMessageBox::Yes);
        }
    }));
    EXPECT_EQ(dialog.device.port, target);
    EXPECT_EQ(printer->installed().back().port, target);
    EXPECT_EQ(
        dialog.page, (PageSettings{.orientation = PageOrientation::Landscape, .paperSize = 8, .copies = 2}));
    EXPECT_EQ(dialog.flags, printflags::InformationContext + printflags::PageNumbers);
    EXPECT_EQ(dialog.fromPage, 2);
}

} // namespace
