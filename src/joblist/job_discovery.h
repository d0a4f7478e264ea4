#pragma once

#include "joblist/job_table.h"
#include "joblist/unread_file.h"

#include <functional>
#include <string>
#include <vector>

namespace genutil {

// Finds the jobs of a folder and makes the table of them that the list shows.
class JobDiscovery {
public:
    JobDiscovery(Component& component, JobTable& table) : component_(component), table_(table) {}

    // Set before the call. JobPath of the job is the folder, followed directly by the file names; its JobName
    // and JobExtension, where it has them, are the current job's, which is row 1 already.
    RecordPtr thisJob;
    std::string programFolder;
    std::string settingsFile; // says whether what is read is kept for the next time; "": it is
    std::function<void(const std::string& caption)> setCaption;
    // Asked before each file, with how many have been dealt with; False ends the reading there.
    std::function<bool(std::size_t done, std::size_t total)> goOn;

    // Reads every job file of the folder, one at a time, read-only, and orders the jobs. A file that cannot
    // be read is reported and passed over. Tells the user when there are no jobs.
    void CompileListOfJobs();
    // The same without a word to the user.
    void readFolder();

    const std::vector<UnreadFile>& unreadFiles() const { return unread_; } // in the order of the reading
    // Files that were left when the reading was ended early; 0: it was not.
    std::size_t leftCount() const { return left_; }

private:
    // Runs the steps for one file inside its error handling.
    void addFile(const std::string& jobPath, const std::string& file);
    void readFile(
        const std::string& jobPath, const std::string& name, const std::string& extension, bool& counted);
    void readFiles();
    // What to open databases with: the memory, where there is one and the host's settings do not refuse it.
    DatabaseEngine& engine();

    Component& component_;
    JobTable& table_;
    DatabaseEngine* engine_ = nullptr; // of the reading that goes on
    std::string currentFile_;          // in upper case
    std::vector<UnreadFile> unread_;
    std::size_t left_ = 0;
};

} // namespace genutil
