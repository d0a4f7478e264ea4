#include "joblist/job_table.h"

#include "hostif/program.h"
#include "joblist/job_errors.h"
#include "joblist/job_names.h"

#include <cstddef>
#include <utility>

namespace genutil {
namespace {

// One line: every CR LF pair becomes one blank.
std::string onOneLine(const std::string& text) {
    std::string line;
    std::size_t from = 0;
    for (std::size_t end; (end = text.find("\r\n", from)) != std::string::npos; from = end + 2)
        line.append(text, from, end - from).append(1, ' ');
    return line.append(text, from);
}

void putDescriptionOnOneLine(Record& jobDetails) {
    const std::string description = jobDetails.get(jobdetails::Description);
    const std::string line = onOneLine(description);
    if (line != description)
        jobDetails.put(jobdetails::Description, line);
}

} // namespace

void JobTable::addJob() {
    if (jobCount == maximum)
        throw Error(
            errors::Overflow, "Overflow: the job list holds at most " + std::to_string(maximum) + " jobs");
    ++jobCount;
}

void JobTable::dropJob() {
    --jobCount;
    jobList.resize(std::size_t(jobCount));
}

void JobTable::AssignSingleJob(const std::string& name, const std::string& extension,
    const std::shared_ptr<Database>& database, const std::shared_ptr<Recordset>& detailsRset,
    const RecordPtr& jobDetails, const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool ok) {
    jobListProcedure(component_, "AssignSingleJob", [&] {
        if (jobCount < 1)
            throw Error(errors::OutOfRange, "Index out of range: the job's row must be counted first");
        jobList.resize(std::size_t(jobCount));
        JobRow& row = jobList.back();
        skippingMissingItems([&] { putDescriptionOnOneLine(required(jobDetails, "jobDetails")); });
        JobSummary summary{component_, name + extension, jobDetails, jobCfg, jobGeneral, detailsRset, {}};
        skippingMissingItems([&] {
            summary.counts = countTables(required(database, "the job database"), component_.sysInfo());
        });
        for (std::size_t i = 0; i < jobColumnCount; ++i) {
            const JobColumn& column = jobColumns()[i];
            if (ok || column.fill == ColumnFill::EveryJob)
                skippingMissingItems([&] { row[i] = column.text(summary); });
        }
    });
}

void JobTable::SortJobList() {
    jobListProcedure(component_, "SortJobList", [&] {
        std::vector<std::string> keys; // made once, and moved with their rows
        for (const JobRow& row : jobList)
            keys.push_back(upperCase(row[0]));

        // Indices are signed, and wide enough to step past the last of 32767 rows.
        struct Range {
            std::ptrdiff_t lo, hi;
        };
        std::vector<Range> pending{{0, std::ptrdiff_t(keys.size()) - 1}};
        const auto key = [&](std::ptrdiff_t i) -> std::string& { return keys[std::size_t(i)]; };
        while (!pending.empty()) {
            auto [lo, hi] = pending.back();
            pending.pop_back();
            while (lo < hi) {
                std::ptrdiff_t i = lo, j = hi;
                const std::string pivot = key(lo + (hi - lo) / 2);
                while (i <= j) {
                    while (key(i) < pivot)
                        ++i;
                    while (pivot < key(j))
                        --j;
                    if (i > j)
                        break;
                    std::swap(key(i), key(j));
                    std::swap(jobList[std::size_t(i)], jobList[std::size_t(j)]);
                    ++i;
                    --j;
                }
                if (i < hi)
                    pending.push_back({i, hi});
                hi = j;
            }
        }
    });
}

} // namespace genutil
