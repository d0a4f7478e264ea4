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

struct SortKey {
    std::int32_t column = 0; // 0: none
    bool ascending = true;
};

SortKey sortKeyNamed(const std::string& sortColumn) {
    const bool reverse = sortColumn.starts_with('-');
    return {sortColumn.empty() ? 0 : jobColumnNamed(sortColumn.substr(reverse ? 1 : 0)), !reverse};
}

GridOrder orderOf(std::int32_t column) {
    return column == jobcolumn::CreateDate || column >= jobcolumn::FileSize ? GridOrder::Numeric
                                                                            : GridOrder::Generic;
}

// The text that a job is ordered by. One whose file has gone comes before all others.
std::string keyText(const ListedJob& job, std::int32_t column) {
    if (column == 0)
        return {};
    if (column == jobcolumn::CreateDate)
        return std::to_string(dateKey(*job.row));
    if (column == jobcolumn::FileSize)
        return job.file ? std::to_string(job.file->size) : "-1";
    if (column == jobcolumn::FileChanged)
        return job.file ? std::to_string(job.file->changed) : "";
    std::string text = fullText(*job.row, column);
    std::ranges::replace(text, '\t', ' ');
    return text;
}

} // namespace

std::vector<ListedJob> JobListing::ordered(const std::string& sortColumn, bool withFiles) const {
    const auto [column, ascending] = sortKeyNamed(sortColumn);
    std::vector<ListedJob> jobs;
    GridRows order;
    for (const JobRow& row : table_.jobList) {
        ListedJob& job = jobs.emplace_back(ListedJob{&row, {}});
        if (withFiles || column >= jobcolumn::FileSize)
            job.file = jobFileFacts(folder_ + row[0]);
        order.add(keyText(job, column));
    }
    order.sort(0, orderOf(column), ascending);
    std::vector<ListedJob> sorted;
    for (std::int32_t at = 0; at < order.shownCount(); ++at)
        sorted.push_back(jobs[std::size_t(order.number(at)) - 1]);
    return sorted;
}

std::int32_t JobListing::ReadFolder(const std::string& folder, const RecordPtr& prog) {
    return run(
        "ReadFolder",
        [&] {
            table_.jobList.clear();
            table_.jobCount = 0;
            folder_ = folder;
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

std::string JobListing::Write(
    const std::string& format, const std::string& sortColumn, const Options& options) {
    return run(
        "Write",
        [&] {
            return writeJobs(jobFormatNamed(format), ordered(sortColumn, options.fileColumns),
                jobColumnNumbers(options.allColumns, options.fileColumns),
                options.isoDates ? DateStyle::Iso : DateStyle::User);
        },
        "Function");
}

} // namespace genutil
