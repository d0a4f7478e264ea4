#include "host/command_table.h"

#include "host/gauge_demo.h"
#include "host/job_commands.h"
#include "host/ls_commands.h"
#include "host/main_window.h"
#include "host/print_command.h"
#include "host/report_kinds.h"
#include "host/settings_commands.h"
#include "host/tour.h"
#include "host/window_visitor.h"

#include <QApplication>
#include <QFileInfo>
#include <QWidget>

namespace kestal {
namespace {

int runMainWindow(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    MainWindow window(host, component);
    window.open();
    if (line.has("--folder"))
        window.openFolder(QString::fromStdString(line.options.at("--folder")));
    return QApplication::exec();
}

int runView(const CommandLine& line, const HostPtr&, ComponentAccess& component) {
    const QFileInfo file(QString::fromStdString(line.file));
    const int mode = line.number("--mode", reportKindOf(file.fileName()).viewMode);
    const bool modal = line.has("--modal");
    const std::string editor = line.has("--editor") ? line.options.at("--editor") : component.defaultEditor();
    component.viewFile(file.absoluteFilePath().toStdString(), static_cast<std::int16_t>(mode), modal, editor);
    return modal ? exit_codes::Success : runUntilClosed();
}

int runGauge(const CommandLine& line, const HostPtr&, ComponentAccess& component) {
    constexpr int usualSeconds = 5;
    runGaugeDemo(component, line.number("--seconds", usualSeconds));
    return exit_codes::Success;
}

int runTourCommand(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    return runTour(host, component, QString::fromStdString(line.options.at("--shots"))) ? exit_codes::Success
                                                                                        : exit_codes::Failure;
}

} // namespace

const std::vector<Command>& commandTable() {
    static const std::vector<Command> commands{
        {"", "", "the main window", {{"--folder", "DIR", "list the reports of this folder"}}, runMainWindow},
        {"view", "FILE", "show a file in the viewer",
            {{"--mode", "N", "view mode (otherwise chosen by the file name)", -32768, 32767},
                {"--editor", "COMMAND",
                    "the external editor with its switches (otherwise the one in the settings)"},
                {"--modal", "", "show the viewer modally"}},
            runView},
        {"print", "FILE", "print a report into a PDF file, without a screen",
            {{"--pdf", "OUT", "the PDF file; an existing one is replaced once the new one is complete", 0, -1,
                 true},
                {"--pages", "A-B", "print only these pages of the report"},
                {"--copies", "N", "print it N times, one complete copy after another (default 1)", 1, 999},
                {"--lines", "A-B", "print only these lines of the file"},
                {"--landscape", "", "print in landscape (otherwise chosen by the file name)"},
                {"--portrait", "", "print in portrait"}},
            runPrint, Screen::Unused},
        {"jobs", "FOLDER",
            "write the jobs of a folder to the standard output; ends with 3 where files could not be read",
            {{"--format", "FORMAT", "table (default), tsv, csv or json"},
                {"--sort", "COLUMN",
                    "sort by the column with this title, Size or Modified; -COLUMN for descending order"},
                {"--all-columns", "", "write all 27 columns, not only the main ones"},
                {"--file-columns", "",
                    "write the size of each file, too, and when it was modified (in UTC but in a table)"},
                {"--iso-dates", "", "write dates as 2026-11-17"}},
            runJobs, Screen::Unused},
        {"job-list", "", "show the job list and write the chosen job to the standard output",
            {{"--folder", "DIR",
                "list the jobs of this folder (otherwise of the data folder in the settings)"}},
            runJobList},
        {"new-job", "FILE", "create an empty job", {}, nullptr, Screen::Unused, runNewJob},
        {"ls-options", "", "show the least-squares options: the preferences, or those of a job",
            {{"--job", "FILE", "the options in the header table of this job"},
                {"--mode", "N",
                    "1 the preferences; 2 a data page, 3 the header without spatial observations, 4 the "
                    "header",
                    1, 4},
                {"--page", "N", "the data mode whose page --mode 2 shows", 1, 4},
                {"--dump", "", "write all values and their units to the standard output instead", 0, -1,
                    false, true}},
            runLsOptions, Screen::Needed, dumpLsOptions},
        {"point-save", "", "show the options for saving the points of an adjusted network",
            {{"--job", "FILE", "the options in the header table of this job (otherwise the preferences)"}},
            runPointSave},
        {"preferences", "", "show the general preferences", {}, runPreferences},
        {"display", "", "choose what the plot of a job shows",
            {{"--job", "FILE", "the job whose plot it is (otherwise a plane job's)"}}, runDisplay},
        {"history", "", "show the history of the product", {}, runHistory},
        {"gauge", "", "demonstrate the progress gauge", {{"--seconds", "N", "how long (default 5)", 1, 3600}},
            runGauge},
        {"tour", "", "play every dialog and take a picture of each",
            {{"--shots", "DIR", "folder for the pictures", 0, -1, true}}, runTourCommand, Screen::Usable},
    };
    return commands;
}

} // namespace kestal
