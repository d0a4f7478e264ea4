#pragma once

#include "joblist/job_columns.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace genutil {

// The jobs that the list shows, one row each. Rows are numbered from 1, as the grid shows them.
class JobTable {
public:
    static constexpr std::int16_t maximum = 32767;

    explicit JobTable(Component& component) : component_(component) {}

    std::vector<JobRow> jobList;
    std::int16_t jobCount = 0;

    // Makes room for one more job. Throws Overflow, naming the limit, when there is none.
    void addJob();
    // Gives up the last job, whose row may be half done.
    void dropJob();

    // Fills row jobCount, which the caller has counted; earlier rows stay. The description loses its line
    // ends in jobDetails, too. `ok` is what ReadJobDetailsTemp answered; when False, jobCfg and jobGeneral
    // are not used.
    void AssignSingleJob(const std::string& name, const std::string& extension,
        const std::shared_ptr<Database>& database, const std::shared_ptr<Recordset>& detailsRset,
        const RecordPtr& jobDetails, const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool ok);

    // Orders the rows by file name, case left aside; which of two names that differ in case alone comes first
    // is not defined.
    void SortJobList();

private:
    Component& component_;
};

} // namespace genutil
