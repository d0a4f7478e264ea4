#include "host/services.h"
#include "host/text_rules.h"

#include <QDateTime>
#include <QEventLoop>
#include <QFileInfo>
#include <QProcess>

namespace kestal {
namespace {

// The number of a program that could not be started or that was ended by a signal.
constexpr std::int32_t notRun = -1;

// Starts the program directly: no shell sees the command line.
std::int32_t runAndWait(Host& host, const std::string& commandLine) {
    std::vector<std::string> arguments = splitCommandLine(commandLine);
    if (arguments.empty() || arguments[0].empty())
        throw AutomationError(errors::InvalidCall, "RunAndWait: the command line must name a program");
    const QString program = QString::fromStdString(arguments[0]);
    QStringList rest;
    for (std::size_t i = 1; i < arguments.size(); ++i)
        rest += QString::fromStdString(arguments[i]);

    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setStandardInputFile(QProcess::nullDevice());
    QEventLoop loop;
    QObject::connect(process.get(), &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(process.get(), &QProcess::errorOccurred, &loop, [&](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            loop.quit();
    });
    process->start(program, rest);
    if (process->state() != QProcess::NotRunning)
        loop.exec();
    if (process->state() != QProcess::NotRunning) {
        // The application ends while the program runs on: destroying the object here would kill the program.
        process->disconnect(&loop);
        process.release();
        return notRun;
    }
    if (process->error() == QProcess::FailedToStart) {
        host.report(QString("The program '%1' cannot be started: %2").arg(program, process->errorString()));
        return notRun;
    }
    return process->exitStatus() == QProcess::NormalExit ? process->exitCode() : notRun;
}

double fileDate(const std::string& file) {
    const QFileInfo info(QString::fromStdString(file));
    if (!info.exists())
        throw AutomationError(errors::FileNotFound, "FileDate: the file " + file + " does not exist");
    const QDateTime written = info.lastModified();
    constexpr double millisecondsPerDay = 86'400'000;
    return static_cast<double>(QDate(1899, 12, 30).daysTo(written.date())) +
           written.time().msecsSinceStartOfDay() / millisecondsPerDay;
}

class FileProcs : public AutomationObject {
public:
    explicit FileProcs(HostPtr host) : AutomationObject("k_genproc.fileProcs") {
        method("RunAndWait", [host = std::move(host)](
                                 const std::string& commandLine) { return runAndWait(*host, commandLine); });
        method("FileDate",
            [](const std::string& file, std::int16_t, bool, std::int16_t) { return fileDate(file); });
    }
};

} // namespace

Ref<IDispatch> makeFileProcs(const HostPtr& host) {
    return Ref<IDispatch>::adopt(new FileProcs(host));
}

} // namespace kestal
