#include "host/host.h"

#include "host/general_preferences.h"
#include "host/late_bound.h"
#include "host/ls_option_set.h"
#include "host/output.h"
#include "host/settings_file.h"
#include "hostif/value.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPointer>
#include <QStandardPaths>

namespace kestal {
namespace {

QString firstFolder(const QStringList& candidates) {
    for (const QString& each : candidates)
        if (!each.isEmpty() && QFileInfo(each).isDir())
            return QDir(each).canonicalPath();
    return {};
}

Variant textValue(const QString& text) {
    return Variant(std::string_view(text.toStdString()));
}

constexpr const char* section = "Kestal";
constexpr const char* viewState = "FileViewState";
constexpr const char* dataFolder = "DataPath";
constexpr const char* systemPrograms = "/usr/bin/"; // where an editor is looked for while none is set
constexpr Setting instantHelp(bool on) {
    return {"MainWindow", "InstantHelp", on ? "True" : "False"};
}

// Every writer and the working copy are beside the file itself, wherever a link to it stands.
HostPaths resolved(HostPaths paths) {
    try {
        paths.settings = QString::fromStdString(realSettingsFile(paths.settings.toStdString()));
    } catch (const std::exception&) {
        // Whoever reads or writes them will say what is wrong.
    }
    return paths;
}

Ref<RecordObject> makeProgram(const HostPaths& paths) {
    auto prog = Ref<RecordObject>::adopt(new RecordObject(records::prog()));
    const std::pair<const char*, QString> values[] = {{"ProgramFolder", paths.program},
        {"HelpSource", paths.help}, {"SettingsFile", paths.settings},
        {"SettingsWorkFile", QString::fromStdString(workingCopyOf(paths.settings.toStdString()))},
        {"DataPath", paths.samples}, {"WindowsFolder", systemPrograms}};
    for (const auto& [name, value] : values)
        prog->set(name, textValue(value));
    return prog;
}

} // namespace

HostPaths HostPaths::standard() {
    const QDir program(QCoreApplication::applicationDirPath());
    const QString source = KESTAL_SOURCE_FOLDER;
    const QString share = firstFolder({qEnvironmentVariable("KESTAL_SHARE"),
        program.filePath("../share/kestal"), program.filePath("../share"), source + "/share"});
    const QString ownSettings = qEnvironmentVariable("KESTAL_SETTINGS");
    HostPaths paths;
    paths.program = program.path() + '/';
    paths.settings = ownSettings.isEmpty()
                         ? QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + "/kestal.ini"
                         : QFileInfo(ownSettings).absoluteFilePath();
    paths.log = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/kestal.log";
    paths.help = share + "/help/kestal-help.txt";
    paths.samples = firstFolder({share + "/samples", share + "/../samples", source + "/samples"});
    return paths;
}

QString HostPaths::helpPage(const char* name) const {
    return QFileInfo(help).dir().filePath(name);
}

Host::Host(HostPaths hostPaths)
    : paths(resolved(std::move(hostPaths))), log(paths.log), help(HelpTexts::load(paths.help)),
      prog(makeProgram(paths)), lsOptions(makeLsOptionSet()), lsOptionDefaults(makeLsOptionSet()),
      genPrefs(makeGeneralPreferences()) {
    const QLocale user = QLocale::system();
    genutil::setNumberLocale({user.decimalPoint().toStdString(), user.groupSeparator().toStdString()});
    for (const QString& fault : help.faults())
        log.write("Help: " + fault);
    try {
        readSettings();
    } catch (const std::exception& error) {
        log.write(error.what());
    }
    beginDataPath();
    placeListFolder({});
    prog->set("Changed", Variant(false));
}

void Host::readSettings() {
    const IniText stored = loadSettings(paths.settings.toStdString());
    if (!stored.fault().empty())
        log.write("The settings file " + paths.settings +
                  " cannot be written: " + QString::fromStdString(stored.fault()));
    for (const QString& fault : readLsOptionSet(*lsOptions.get(), stored) +
                                    readGeneralPreferences(*genPrefs.get(), stored) + marks.read(stored))
        log.write(fault);
    const auto read = [&](const Setting& setting, const std::function<void(const Variant&)>& take) {
        try {
            take(Variant(
                std::string_view(stored.value(setting.section, setting.key).value_or(setting.value))));
        } catch (const std::exception& error) {
            log.write(
                QString("The stored setting %1 is not used: %2").arg(setting.key.c_str(), error.what()));
        }
    };
    read({section, viewState, "0"}, [this](const Variant& value) { prog->set(viewState, value); });
    read(instantHelp(false), [this](const Variant& value) { instantHelpOn = truthOf(value); });
    for (const auto& known : {lsOptionSettings(*lsOptions.get()), generalPreferenceSettings(*genPrefs.get()),
             marks.knownSettings(stored), programSettings(prog.get()),
             std::vector{instantHelp(instantHelpOn)}})
        knownSettings.note(known);
}

void Host::beginDataPath() {
    try {
        const QString sampleJobs = paths.samples + "/jobs";
        if (dataPath().empty() && !paths.samples.isEmpty() && QFileInfo(sampleJobs).isDir())
            setDataPath(sampleJobs);
        if (const std::string stored = dataPath(); !stored.empty())
            prog->set(dataFolder, Variant(std::string_view(stored)));
    } catch (const std::exception& error) {
        log.write(QString("The stored setting %1 is not used: %2").arg(dataFolder, error.what()));
    }
}

std::string Host::dataPath() const {
    return readSetting(paths.settings.toStdString(), section, dataFolder, "");
}

void Host::setDataPath(const QString& folder) {
    const QString path = QFileInfo(folder).absoluteFilePath();
    const std::string text = (path.endsWith('/') ? path : path + '/').toStdString();
    const bool wasChanged = prog->isChanged();
    prog->set(dataFolder, Variant(std::string_view(text)));
    prog->set("Changed", Variant(wasChanged));
    placeListFolder(jobPath_);
    keep({section, dataFolder, text});
}

void Host::keep(const Setting& setting) {
    try {
        storeSettings(paths.settings.toStdString(), {&setting, 1});
    } catch (const std::exception& error) {
        log.write(QString("The setting %1 is not stored: %2").arg(setting.key.c_str(), error.what()));
    }
}

// Throws where the settings cannot be stored; nothing is stored then.
void Host::store(const std::vector<Setting>& settings) {
    const std::vector<Setting> changed = knownSettings.changedIn(settings);
    if (changed.empty())
        return;
    storeSettings(paths.settings.toStdString(), changed);
    knownSettings.note(changed);
}

// The user is told once that choices are lost, and again when that has been otherwise in between.
void Host::storeChoice(const QString& what, const std::vector<Setting>& settings) {
    try {
        store(settings);
        toldOfLoss_ = false;
    } catch (const std::exception& error) {
        const QString problem = what + " cannot be stored: " + error.what();
        if (std::exchange(toldOfLoss_, true))
            log.write(problem);
        else
            report(problem, choiceIsTemporary);
    }
}

void Host::setInstantHelp(bool on) {
    instantHelpOn = on;
    storeChoice("The choice of instant help", {instantHelp(on)});
    if (instantHelpChanged)
        instantHelpChanged(on);
}

void Host::keepMarks() {
    if (!marks.isChanged())
        return;
    marks.keep();
    storeChoice("What the plot shows", marks.settings());
}

void Host::takeProgram(IDispatch* changed) {
    prog->copyFrom(changed);
    prog->set("Changed", Variant(false));
    store(programSettings(prog.get()));
}

std::vector<Setting> Host::programSettings(IDispatch* program) const {
    return {{section, viewState, textOf(LateBound(program).get(viewState))}};
}

void Host::takeLsOptions(IDispatch* changed) {
    lsOptions->copyFrom(changed);
    store(lsOptionSettings(*lsOptions.get()));
}

void Host::takePreferences(IDispatch* preferences, IDispatch* options, IDispatch* program) {
    genPrefs->copyFrom(preferences);
    lsOptions->copyFrom(options);
    prog->copyFrom(program);
    prog->set("Changed", Variant(false));
}

void Host::placeListFolder(const std::string& jobPath) {
    jobPath_ = jobPath;
    const bool wasChanged = prog->isChanged();
    prog->set("ListFolder", Variant(std::string_view(listFolder(int16Of(genPrefs->value("ListGroup")),
                                prog->text("ProgramFolder"), prog->text(dataFolder), jobPath))));
    prog->set("Changed", Variant(wasChanged));
}

void Host::report(const QString& problem, const QString& details) {
    log.write(details.isEmpty() ? problem : problem + "  " + details);
    if (showProblem)
        showProblem(problem);
    if (!attended || !qobject_cast<QApplication*>(QCoreApplication::instance())) {
        printProblem(details.isEmpty() ? problem : problem + "  " + details);
        return;
    }
    const QString text = details.isEmpty() ? problem : problem + "\n\n" + details;
    // The window below may go while the box is open, and takes it along.
    const QPointer box(
        new QMessageBox(QMessageBox::Warning, "Kestal", text, QMessageBox::Ok, QApplication::activeWindow()));
    box->setTextFormat(Qt::PlainText);
    box->exec();
    delete box.data();
}

void Host::collect(const ReadingProblem& problem, const QString& details) {
    const QString text = problem.file.isEmpty() ? problem.reason : problem.file + ": " + problem.reason;
    log.write(text + "  " + details);
    if (!attended)
        printProblem(text);
    readingProblems.push_back(problem);
}

} // namespace kestal
