#pragma once

#include "joblist/job_table.h"

#include <functional>
#include <string>

namespace genutil {

// Finds the jobs of a folder and makes the table of them that the list shows.
class JobDiscovery {
public:
    JobDiscovery(Component& component, JobTable& table) : component_(component), table_(table) {}

    // Set before the call. JobPath of the job is the folder, followed directly by the file names; its JobName
    // and JobExtension, where it has them, are the current job's, which is row 1 already.
    RecordPtr thisJob;
    std::string programFolder;
    std::function<void(const std::string& caption)> setCaption;

    // Reads every job file of the folder, one at a time, read-only. A file that cannot be read is reported
    // and passed over. Tells the user when there are no jobs.
    void CompileListOfJobs();

private:
    // Runs the steps for one file inside its error handling.
    void addFile(const std::string& jobPath, const std::string& file);
    void readFile(
        const std::string& jobPath, const std::string& name, const std::string& extension, bool& counted);
    bool isCurrentJob(const std::string& file) const;

    Component& component_;
    JobTable& table_;
};

} // namespace genutil
