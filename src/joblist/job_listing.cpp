#include "joblist/job_listing.h"

#include "hostif/grid_rows.h"
#include "hostif/program.h"
#include "joblist/job_cells.h"
#include "joblist/job_discovery.h"
#include "joblist/job_errors.h"
#include "joblist/job_text.h"

#include <algorithm>

namespace genutil {
namespace {

// The rows in the order of one column.
std::vector<const JobRow*> ordered(const std::vector<JobRow>& jobs, const std::string& sortColumn) {
    GridRows order;
    const bool reverse = sortColumn.starts_with('-');
    const std::int32_t column = sortColumn.empty() ? 0 : jobColumnNamed(sortColumn.substr(reverse ? 1 : 0));
    const bool byDate = column == jobcolumn::CreateDate;
    for (const JobRow& job : jobs) {
        std::string key = byDate ? std::to_string(dateKey(job)) : column ? fullText(job, column) : "";
        std::ranges::replace(key, '\t', ' ');
        order.add(key);
    }
    order.sort(0, byDate ? GridOrder::Numeric : GridOrder::Generic, !reverse);
    std::vector<const JobRow*> rows;
    for (std::int32_t at = 0; at < order.shownCount(); ++at)
        rows.push_back(&jobs[std::size_t(order.number(at)) - 1]);
    return rows;
}

} // namespace

std::int32_t JobListing::ReadFolder(const std::string& folder, const RecordPtr& prog) {
    return run(
        "ReadFolder",
        [&] {
            table_.jobList.clear();
            table_.jobCount = 0;
            JobDiscovery discovery(component(), table_);
            discovery.thisJob = component().objects().createRecord("job");
            required(discovery.thisJob, "the job of the listing").put(job::JobPath, folder);
            if (prog) {
                discovery.programFolder = prog->get(program::ProgramFolder);
                discovery.settingsFile = prog->get(program::SettingsFile);
            }
            discovery.readFolder();
            return std::int32_t(table_.jobCount);
        },
        "Function");
}

std::string JobListing::Write(const std::string& format, const std::string& sortColumn, bool allColumns) {
    return run(
        "Write",
        [&] {
            return writeJobs(
                jobFormatNamed(format), ordered(table_.jobList, sortColumn), jobColumnNumbers(allColumns));
        },
        "Function");
}

} // namespace genutil
