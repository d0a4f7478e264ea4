#include "platform/database/file_state.h"

#include <algorithm>
#include <ctime>

#include <sys/stat.h>

namespace genutil {
namespace {

// Of any moment that a file may be dated to: those of far centuries fall upon others, still each upon its
// own.
std::int64_t nanoseconds(const timespec& time) {
    return static_cast<std::int64_t>(
        static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(time.tv_nsec));
}

} // namespace

std::optional<FileState> fileState(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileState{.size = static_cast<std::uint64_t>(status.st_size),
        .number = status.st_ino,
        .written = nanoseconds(status.st_mtim),
        .changed = nanoseconds(status.st_ctim)};
}

bool isSettled(const FileState& state, std::int64_t lookedAt) {
    constexpr std::int64_t coarsestGrain = 2'000'000'000; // FAT's
    return std::max(state.written, state.changed) < lookedAt - coarsestGrain;
}

std::int64_t now() {
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanoseconds(time);
}

} // namespace genutil
