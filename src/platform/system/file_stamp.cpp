#include "platform/system/file_stamp.h"

#include <sys/stat.h>

namespace genutil {

std::optional<FileStamp> stampOf(const std::string& path) {
    struct stat status {};
    if (path.find('\0') != std::string::npos || ::stat(path.c_str(), &status) != 0 ||
        !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileStamp{.device = status.st_dev,
        .file = status.st_ino,
        .size = std::uint64_t(status.st_size),
        // Unsigned: a file may be dated to a year that no 64 bits of nanoseconds reach.
        .written = static_cast<std::int64_t>(
            std::uint64_t(status.st_mtim.tv_sec) * 1'000'000'000 + std::uint64_t(status.st_mtim.tv_nsec))};
}

} // namespace genutil
