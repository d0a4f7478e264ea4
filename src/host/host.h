#pragma once

#include "host/help_texts.h"
#include "host/log_file.h"
#include "host/reading_problem.h"
#include "host/record_object.h"

#include <QString>

#include <functional>
#include <vector>

namespace kestal {

/// Where the host finds and keeps its files.
struct HostPaths {
    QString settings; ///< $KESTAL_SETTINGS, else kestal.ini in the user's configuration folder
    QString log;      ///< kestal.log in the user's application data folder
    QString help;     ///< help/kestal-help.txt of the share folder
    QString samples;  ///< the folder of the sample reports; "" where they are not installed
    QString program;  ///< the folder of the executable, with a trailing separator

    /// The share folder is $KESTAL_SHARE, else the first that exists of ../share/kestal and ../share beside
    /// the executable and that of the source tree. Needs the application object.
    static HostPaths standard();
};

/// What all parts of the host share. The service objects hold it, so it lives as long as the component does.
class Host {
public:
    explicit Host(HostPaths hostPaths);

    HostPaths paths;
    LogFile log;
    HelpTexts help;
    Ref<RecordObject> prog;
    Ref<RecordObject> lsOptions; ///< the user's preferences, which begin as the settings have them
    const Ref<RecordObject> lsOptionDefaults; ///< the factory's

    bool instantHelpOn = false;
    /// False where nobody sits at the screen: problems then go to the standard error stream, not into a
    /// window.
    bool attended = true;

    // Set by the windows that exist; unset ones drop what they are given.
    std::function<void(const QString& title, const QString& text)> showInstantHelp;
    std::function<void(const QString& problem)> showProblem; ///< the latest problem, for a status bar

    /// The job files that the latest list of jobs could not read.
    std::vector<ReadingProblem> readingProblems;

    /// Descriptions of errors that procedures of the component have reported during the present call.
    std::vector<std::string> procedureReports;

    /// The folder whose jobs are listed while none is open: a setting, which a fresh installation begins with
    /// the sample jobs. With a trailing separator; "" where there is none.
    std::string dataPath() const;
    /// Stores it. A setting that cannot be stored is logged.
    void setDataPath(const QString& folder);

    /// Takes over the values of a program object that a dialog has changed, and stores those that outlive the
    /// session.
    void takeProgram(IDispatch* changed);

    /// Takes over the least-squares options that a dialog has changed, and stores them.
    void takeLsOptions(IDispatch* changed);

    /// Logs the problem and puts it before the user.
    void report(const QString& problem, const QString& details = {});
    /// Logs the problem and keeps it; where nobody sits at the screen it also goes to the standard error
    /// stream.
    void collect(const ReadingProblem& problem, const QString& details);

private:
    void beginDataPath();
};

} // namespace kestal
