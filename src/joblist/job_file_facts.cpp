#include "joblist/job_file_facts.h"

#include <array>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace genutil {
namespace {

std::string written(const std::tm* parts, const char* format) {
    std::array<char, 64> text{};
    return parts ? std::string(text.data(), std::strftime(text.data(), text.size(), format, parts)) : "";
}

std::time_t secondsOf(std::int64_t nanoseconds) {
    using namespace std::chrono;
    return std::time_t(floor<seconds>(std::chrono::nanoseconds(nanoseconds)).count());
}

} // namespace

std::optional<JobFileFacts> jobFileFacts(const std::string& path) {
    using namespace std::chrono;
    const std::filesystem::path file(std::u8string(path.begin(), path.end()));
    std::error_code failure;
    JobFileFacts facts{.size = file_size(file, failure)};
    if (failure)
        return std::nullopt;
    const auto changed = last_write_time(file, failure);
    if (failure)
        return std::nullopt;
    facts.changed = duration_cast<nanoseconds>(file_clock::to_sys(changed).time_since_epoch()).count();
    return facts;
}

std::string isoMoment(std::int64_t nanoseconds) {
    const std::time_t seconds = secondsOf(nanoseconds);
    return written(std::gmtime(&seconds), "%Y-%m-%dT%H:%M:%SZ");
}

std::string localMoment(std::int64_t nanoseconds) {
    const std::time_t seconds = secondsOf(nanoseconds);
    return written(std::localtime(&seconds), "%Y-%m-%d %H:%M");
}

} // namespace genutil
