#pragma once

#include "frame/loader.h"
#include "joblist/job_table.h"
#include "joblist/job_text.h"

#include <cstdint>
#include <string>
#include <vector>

namespace genutil {

// The jobs of a folder without the dialog, for programs that print or export them.
class JobListing : public LoaderBase {
public:
    explicit JobListing(Component& component) : LoaderBase(component, "cJobListLoader"), table_(component) {}

    // Reads the jobs of a folder, whose path ends in a separator. Files that cannot be read are reported and
    // passed over. `prog` may be null. Answers with the number of jobs.
    std::int32_t ReadFolder(const std::string& folder, const RecordPtr& prog);

    struct Options {
        bool allColumns = false;  // or only the main ones
        bool fileColumns = false; // size of each file, and when it was changed
        bool isoDates = false;    // "2026-11-17" instead of the user's way
    };

    // What was read, in a format of jobFormatNamed(). `sortColumn` is a column's title, led by "-" for the
    // reverse order; "" for the order of the names. The files are asked for their size and time here.
    std::string Write(const std::string& format, const std::string& sortColumn, const Options& options);

private:
    std::vector<ListedJob> ordered(const std::string& sortColumn, bool withFiles) const;

    JobTable table_;
    std::string folder_; // whose jobs they are
};

} // namespace genutil
