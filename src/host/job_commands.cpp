#include "host/job_commands.h"

#include "host/component_access.h"
#include "host/current_job.h"
#include "host/job_schema.h"
#include "host/main_form_object.h"
#include "host/output.h"

#include <QDir>
#include <QFileInfo>

namespace kestal {
namespace {

// The rule that a folder of jobs breaks, or "".
QString folderFault(const QString& folder) {
    const QFileInfo info(folder);
    const char* const rule = !info.exists()                               ? "does not exist"
                             : !info.isDir()                              ? "is not a folder"
                             : !info.isReadable() || !info.isExecutable() ? "may not be read by this user"
                                                                          : nullptr;
    return rule ? QString("'%1' %2").arg(folder, rule) : QString();
}

std::string option(const CommandLine& line, const char* name, const char* absent) {
    return line.has(name) ? line.options.at(name) : absent;
}

// The component's list of jobs without a dialog.
class JobTexts {
public:
    JobTexts(const HostPtr& host, const ComponentAccess& component)
        : host_(host), component_(component),
          listing_(component.create<k_genutil::_JobListing2>(k_genutil::classes::cJobListLoader.progId)) {}

    void readFolder(const std::string& folder) {
        k_genutil::Text path(folder);
        auto prog = Ref<IDispatch>::share(host_->prog.get());
        LONG count = 0;
        host_->readingProblems.clear();
        const WaitingNote note("reading the jobs");
        component_.check(listing_->ReadFolder(path.inOut(), prog.inOut(), &count), "Reading " + folder);
    }
    std::string write(const CommandLine& line) {
        k_genutil::Text format(option(line, "--format", "table")), column(option(line, "--sort", "")), text;
        LONG options = 0;
        for (const auto& [name, value] : {std::pair{"--all-columns", k_genutil::_JobListing2::AllColumns},
                 {"--file-columns", k_genutil::_JobListing2::FileColumns},
                 {"--iso-dates", k_genutil::_JobListing2::IsoDates}})
            options |= line.has(name) ? value : 0;
        component_.check(
            listing_->WriteWith(format.inOut(), column.inOut(), options, text.inOut()), "Writing the jobs");
        return text.utf8();
    }

private:
    const HostPtr& host_;
    const ComponentAccess& component_;
    Ref<k_genutil::_JobListing2> listing_;
};

} // namespace

int runJobs(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    JobTexts jobs(host, component);
    try {
        jobs.write(line); // nothing yet, but format and column are looked at before the files are
    } catch (const ComponentError& error) {
        if (error.number() != errors::InvalidCall)
            throw;
        return refuseCommandLine(QString::fromStdString(error.reason()));
    }
    const QString folder = QString::fromStdString(line.file);
    if (const QString fault = folderFault(folder); !fault.isEmpty()) {
        printProblem(fault);
        return exit_codes::Failure;
    }
    const QString path = QFileInfo(folder).absoluteFilePath();
    jobs.readFolder((path.endsWith('/') ? path : path + '/').toStdString());
    if (!writeOutput(jobs.write(line)))
        return exit_codes::Failure;
    return host->readingProblems.empty() ? exit_codes::Success : exit_codes::Partial;
}

int runJobList(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    if (line.has("--folder")) {
        const QString folder = QString::fromStdString(line.options.at("--folder"));
        if (const QString fault = folderFault(folder); !fault.isEmpty()) {
            printProblem(fault);
            return exit_codes::Failure;
        }
        host->setDataPath(folder);
    }
    const auto selected = Ref<JobObject>::adopt(new JobObject);
    const auto mainForm = makeScreenFormObject(host);
    if (!component.listJobs(*selected.get(), CurrentJob(), mainForm.get()))
        return exit_codes::Success;
    return writeOutput(selected->fullName() + "\n") ? exit_codes::Success : exit_codes::Failure;
}

int runNewJob(const CommandLine& line, const HostPtr&) {
    createJob(line.file);
    return exit_codes::Success;
}

CurrentJob openedJob(const CommandLine& line, Host& host) {
    CurrentJob job;
    if (line.has("--job"))
        job.open(QString::fromStdString(line.options.at("--job")));
    for (const QString& fault : job.faults)
        host.log.write(fault);
    return job;
}

} // namespace kestal
