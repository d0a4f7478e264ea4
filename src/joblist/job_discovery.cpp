#include "joblist/job_discovery.h"

#include "hostif/program.h"
#include "joblist/job_errors.h"
#include "joblist/job_fields.h"
#include "joblist/job_files.h"
#include "joblist/job_names.h"
#include "text/blanks.h"
#include "text/letters.h"

namespace genutil {
namespace {

constexpr const char* procedureName = "CompileListOfJobs";
constexpr const char* keepKey = "KeepJobSummaries"; // "False": every job is read from its file each time

// Where a file's error comes from, as its report says it.
std::string sourceOf(const Error& error, const std::string& file) {
    const std::string procedure = jobListName(procedureName);
    switch (error.number()) {
    case errors::TableNotFound:
        return procedure + " (Job '" + file + "')";
    case errors::UnrecognisedDatabase:
        return procedure;
    default:
        return procedure + " reading '" + file + "'";
    }
}

// The reason beside the file's name: the path, which the window's title tells, is left out.
std::string reasonForUser(std::string reason, const std::string& jobPath, const std::string& file) {
    const std::string path = "'" + jobPath + file + "'";
    if (reason.starts_with(path + ": "))
        return reason.substr(path.size() + 2);
    if (reason.starts_with(path))
        return "The file" + reason.substr(path.size());
    if (const std::size_t at = reason.find(path); at != std::string::npos)
        reason.erase(at + 1, jobPath.size());
    return reason;
}

} // namespace

void JobDiscovery::CompileListOfJobs() {
    jobListProcedure(component_, procedureName, [&] {
        readFiles();
        if (table_.jobCount == 0 && left_ == 0)
            component_.desktop().ask({.text = "No jobs stored !! Check folder selected"});
        component_.desktop().setPointer(Pointer::Default);
    });
}

void JobDiscovery::readFolder() {
    jobListProcedure(component_, procedureName, [&] { readFiles(); });
}

void JobDiscovery::readFiles() {
    Record& job = required(thisJob, "the job of the job list");
    job.put(job::JobPath, text::trimBlanks(job.get(job::JobPath)));
    const std::string jobPath = job.get(job::JobPath);
    if (setCaption)
        setCaption("List Jobs - " + jobPath);
    currentFile_ = upperCase(job.get(job::JobName) + job.get(job::JobExtension));
    const std::vector<std::string> files = listJobFiles(jobPath);
    engine_ = &engine();
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (goOn && !goOn(i, files.size())) {
            left_ = files.size() - i;
            break;
        }
        if (!isReservedFile(files[i], jobPath, programFolder))
            addFile(jobPath, files[i]);
    }
    if (engine_ == component_.databaseMemory())
        component_.databaseMemory()->keep();
    if (table_.jobCount > 0)
        table_.SortJobList();
}

DatabaseEngine& JobDiscovery::engine() {
    DatabaseMemory* const memory = component_.databaseMemory();
    if (!memory)
        return component_.databases();
    const std::string keep = settingsFile.empty()
                                 ? "True"
                                 : component_.genProcs().ReadSetting(settingsFile,
                                       component_.regInfo().SettingsSection(), keepKey, "True", true, false);
    if (text::folded(text::trimBlanks(keep)) != "false")
        return *memory;
    memory->forget();
    return component_.databases();
}

void JobDiscovery::addFile(const std::string& jobPath, const std::string& file) {
    std::string name = file;
    std::string extension;
    bool counted = false;
    try {
        skippingMissingItems([&] { extension = component_.genProcs().SplitExtension(name); });
        if (upperCase(name + extension) != currentFile_)
            readFile(jobPath, name, extension, counted);
    } catch (...) {
        const Error error = toError(std::current_exception());
        if (counted)
            table_.dropJob();
        unread_.push_back(
            {name + extension, reasonForUser(reasonOfCurrentError(), jobPath, name + extension)});
        component_.errHandler().ReportEventError(error.description(), sourceOf(error, name + extension));
    }
}

void JobDiscovery::readFile(
    const std::string& jobPath, const std::string& name, const std::string& extension, bool& counted) {
    std::shared_ptr<Database> database;
    std::shared_ptr<Recordset> recordset;
    skippingMissingItems([&] { database = engine_->OpenDatabase(jobPath + name + extension, false, true); });
    skippingMissingItems([&] {
        recordset =
            required(database, "the job database").OpenRecordset(component_.sysInfo().JobDetailsTable());
    });
    RecordPtr jobCfg, jobGeneral, jobDetails;
    bool ok = false;
    skippingMissingItems(
        [&] { ReadJobDetailsTemp(component_, recordset, jobCfg, jobGeneral, jobDetails, ok); });
    table_.addJob();
    counted = true;
    table_.AssignSingleJob(name, extension, database, recordset, jobDetails, jobCfg, jobGeneral, ok);
}

} // namespace genutil
