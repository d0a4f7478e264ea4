#pragma once

#include "host/help_texts.h"
#include "host/log_file.h"
#include "host/record_object.h"

#include <QString>

#include <functional>

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

    bool instantHelpOn = false;
    /// False where nobody sits at the screen: problems then go to the standard error stream, not into a
    /// window.
    bool attended = true;

    // Set by the windows that exist; unset ones drop what they are given.
    std::function<void(const QString& title, const QString& text)> showInstantHelp;
    std::function<void(const QString& problem)> showProblem; ///< the latest problem, for a status bar

    /// Takes over the values of a program object that a dialog has changed, and stores those that outlive the
    /// session.
    void takeProgram(IDispatch* changed);

    /// Logs the problem and puts it before the user.
    void report(const QString& problem, const QString& details = {});
};

} // namespace kestal
