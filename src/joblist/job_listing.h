#pragma once

#include "frame/loader.h"
#include "joblist/job_table.h"

#include <cstdint>
#include <string>

namespace genutil {

// The jobs of a folder without the dialog, for programs that print or export them.
class JobListing : public LoaderBase {
public:
    explicit JobListing(Component& component) : LoaderBase(component, "cJobListLoader"), table_(component) {}

    // Reads the jobs of a folder, whose path ends in a separator. Files that cannot be read are reported and
    // passed over. `prog` may be null. Answers with the number of jobs.
    std::int32_t ReadFolder(const std::string& folder, const RecordPtr& prog);

    // What was read, in a format of jobFormatNamed(). `sortColumn` is a column's title, led by "-" for the
    // reverse order; "" for the order of the names.
    std::string Write(const std::string& format, const std::string& sortColumn, bool allColumns);

private:
    JobTable table_;
};

} // namespace genutil
