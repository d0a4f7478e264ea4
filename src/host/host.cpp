#include "host/host.h"

#include "host/ls_option_set.h"
#include "host/output.h"
#include "host/settings_file.h"
#include "hostif/value.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
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

Ref<RecordObject> makeProgram(const HostPaths& paths) {
    auto prog = Ref<RecordObject>::adopt(new RecordObject(records::prog()));
    const std::pair<const char*, QString> values[] = {{"ProgramFolder", paths.program},
        {"HelpSource", paths.help}, {"SettingsFile", paths.settings}, {"SettingsWorkFile", paths.settings},
        {"DataPath", paths.samples}, {"ListFolder", paths.samples}};
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

Host::Host(HostPaths hostPaths)
    : paths(std::move(hostPaths)), log(paths.log), help(HelpTexts::load(paths.help)),
      prog(makeProgram(paths)), lsOptions(makeLsOptionSet()), lsOptionDefaults(makeLsOptionSet()) {
    const QLocale user = QLocale::system();
    genutil::setNumberLocale({user.decimalPoint().toStdString(), user.groupSeparator().toStdString()});
    for (const QString& fault : help.faults())
        log.write("Help: " + fault);
    try {
        const std::string stored = readSetting(paths.settings.toStdString(), section, viewState, "0");
        prog->set(viewState, Variant(std::string_view(stored)));
    } catch (const std::exception& error) {
        log.write(QString("The stored setting %1 is not used: %2").arg(viewState, error.what()));
    }
    for (const QString& fault : readLsOptionSet(*lsOptions.get(), paths.settings.toStdString()))
        log.write(fault);
    beginDataPath();
    prog->set("Changed", Variant(false));
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
    try {
        writeSetting(paths.settings.toStdString(), section, dataFolder, text);
    } catch (const std::exception& error) {
        log.write(QString("The setting %1 is not stored: %2").arg(dataFolder, error.what()));
    }
}

void Host::takeProgram(IDispatch* changed) {
    prog->copyFrom(changed);
    prog->set("Changed", Variant(false));
    writeSetting(paths.settings.toStdString(), section, viewState, prog->text(viewState));
}

void Host::takeLsOptions(IDispatch* changed) {
    lsOptions->copyFrom(changed);
    writeLsOptionSet(*lsOptions.get(), paths.settings.toStdString());
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
    QMessageBox box(QMessageBox::Warning, "Kestal", text, QMessageBox::Ok, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void Host::collect(const ReadingProblem& problem, const QString& details) {
    const QString text = problem.file.isEmpty() ? problem.reason : problem.file + ": " + problem.reason;
    log.write(text + "  " + details);
    if (!attended)
        printProblem(text);
    readingProblems.push_back(problem);
}

} // namespace kestal
