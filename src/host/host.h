#pragma once

#include "host/help_texts.h"
#include "host/instant_help_panel.h"
#include "host/known_settings.h"
#include "host/log_file.h"
#include "host/reading_problem.h"
#include "host/record_object.h"
#include "host/settings_file.h"
#include "host/view_marks.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace kestal {

/// Where the host finds and keeps its files.
struct HostPaths {
    QString settings; ///< $KESTAL_SETTINGS, else kestal.ini in the user's configuration folder
    QString log;      ///< kestal.log in the user's application data folder
    QString help;     ///< help/kestal-help.txt of the share folder
    QString samples;  ///< the folder of the sample reports; "" where they are not installed
    QString program;  ///< the folder of the executable, with a trailing separator

    /// A file that stands beside the help file.
    QString helpPage(const char* name) const;

    /// The share folder is $KESTAL_SHARE, else the first that exists of ../share/kestal and ../share beside
    /// the executable and that of the source tree. Needs the application object.
    static HostPaths standard();
};

/// What a user is told whose choices cannot be stored.
inline constexpr const char* choiceIsTemporary = "What you have chosen holds until the program ends.";

/// What the procedure reported in which an error began; null where the reports do not say more than the
/// error's description. On its way to the caller an error is described by its number alone.
const std::string* originOf(const std::string& description, const std::vector<std::string>& procedureReports);

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

    Ref<RecordObject> genPrefs; ///< the user's general preferences
    ViewMarks marks;            ///< what the plot shows

    bool instantHelpOn = false;
    /// False where nobody sits at the screen: problems then go to the standard error stream, not into a
    /// window.
    bool attended = true;

    std::function<void(const QString& title, const QString& text)> showInstantHelp = showInstantHelpBeside;

    // Set by the windows that exist; unset ones drop what they are given.
    std::function<void(const QString& problem)> showProblem; ///< the latest problem, for a status bar
    std::function<void(bool on)> instantHelpChanged;

    /// The job files that the latest list of jobs could not read.
    std::vector<ReadingProblem> readingProblems;

    /// Descriptions of errors that procedures of the component have reported during the present call.
    std::vector<std::string> procedureReports;

    /// The folder whose jobs are listed while none is open: a setting, which a fresh installation begins with
    /// the sample jobs. With a trailing separator; "" where there is none.
    std::string dataPath() const;
    /// Stores it. A setting that cannot be stored is logged.
    void setDataPath(const QString& folder);

    /// Switches instant help on or off and tells the window. The choice is stored.
    void setInstantHelp(bool on);

    /// Stores marks that were changed.
    void keepMarks();

    /// Takes over the values of a program object that a dialog has changed, and stores those that outlive the
    /// session.
    void takeProgram(IDispatch* changed);

    /// The settings of what outlives the session in a program object.
    std::vector<Setting> programSettings(IDispatch* program) const;

    /// Takes over the least-squares options that a dialog has changed, and stores them.
    void takeLsOptions(IDispatch* changed);

    /// Takes over what a dialog of the preferences hands back; it has stored that itself.
    void takePreferences(IDispatch* preferences, IDispatch* options, IDispatch* program);

    /// Sets `ListFolder` of the program to where the preferences want list files, for the open job's folder
    /// or, with "", for none. It follows the data folder from then on.
    void placeListFolder(const std::string& jobPath);

    /// What this program has read from the settings, and stored in them.
    KnownSettings knownSettings;

    /// The change of the settings that a dialog is making: set from OpenSettingsStore to CloseSettingsStore.
    std::unique_ptr<SettingsChange> openStore;
    /// Gives up a change that a failed dialog has left open.
    void abandonStore() { openStore.reset(); }

    /// Logs the problem and puts it before the user.
    void report(const QString& problem, const QString& details = {});
    /// Logs the problem and keeps it; where nobody sits at the screen it also goes to the standard error
    /// stream.
    void collect(const ReadingProblem& problem, const QString& details);

private:
    void readSettings();
    void beginDataPath();
    void keep(const Setting& setting);
    void store(const std::vector<Setting>& settings);
    void storeChoice(const QString& what, const std::vector<Setting>& settings);

    std::string jobPath_;     // of the open job
    bool toldOfLoss_ = false; // that choices cannot be stored
};

} // namespace kestal
