#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace genutil {

// What the file system knows of a job's file.
struct JobFileFacts {
    std::uintmax_t size = 0;  // bytes
    std::int64_t changed = 0; // nanoseconds since the beginning of 1970, UTC
};

// Nothing for a file that has gone.
std::optional<JobFileFacts> jobFileFacts(const std::string& path);

// "2026-11-24T03:24:25Z", and for reading the same moment in the user's time zone: "2026-11-24 04:24".
std::string isoMoment(std::int64_t nanoseconds);
std::string localMoment(std::int64_t nanoseconds);

} // namespace genutil
