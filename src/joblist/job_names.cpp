#include "joblist/job_names.h"

#include "hostif/program.h"
#include "joblist/job_errors.h"
#include "text/letters.h"

#include <algorithm>

namespace genutil {

std::string upperCase(std::string_view name) {
    std::string upper = text::folded(name);
    std::ranges::transform(upper, upper.begin(),
        [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return upper;
}

void GetJobnameParts(Component& component, Record& thisJob, const std::string& fileName) {
    jobListProcedure(component, "GetJobnameParts", [&] {
        const std::size_t dot = fileName.find('.');
        if (dot == std::string::npos)
            return;
        thisJob.put(job::JobExtension, fileName.substr(dot));
        thisJob.put(job::JobName, fileName.substr(0, dot));
    });
}

} // namespace genutil
