#include "platform/database/database_file.h"

#include "hostif/error.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace genutil {
namespace {

[[noreturn]] void fail(const std::string& path) {
    const std::system_error failure(errno, std::generic_category(), "Cannot open '" + path + "'");
    std::error_code ignored;
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (failure.code() == std::errc::no_such_file_or_directory && !folder.empty() &&
        !std::filesystem::exists(folder, ignored))
        throw Error(errors::PathNotFound, "The folder of '" + path + "' does not exist");
    throw toError(std::make_exception_ptr(failure));
}

} // namespace

void notADatabase(const std::string& path, const std::string& why) {
    throw Error(errors::UnrecognisedDatabase, "'" + path + "' is not a job database: " + why);
}

DatabaseFile::DatabaseFile(const std::string& path) : path_(path) {
    if (path.empty() || path.find('\0') != std::string::npos)
        throw Error(errors::BadFileName, "The name of a file must not contain a zero byte");
    // Looked at before it is opened: opening a device can already act on it.
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        fail(path);
    if (!S_ISREG(status.st_mode))
        notADatabase(path, "only regular files are");
    number_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (number_ < 0)
        fail(path);
    if (::fstat(number_, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(number_);
        notADatabase(path, "only regular files are");
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
    head_.resize(headSize);
    const ssize_t read = ::pread(number_, head_.data(), head_.size(), 0);
    head_.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
}

DatabaseFile::DatabaseFile(DatabaseFile&& other) noexcept
    : path_(std::move(other.path_)), number_(std::exchange(other.number_, -1)), size_(other.size_),
      head_(std::move(other.head_)) {}

DatabaseFile::~DatabaseFile() {
    if (number_ >= 0)
        ::close(number_);
}

bool DatabaseFile::readAt(std::uint64_t place, std::span<char> bytes) const {
    while (!bytes.empty()) {
        const ssize_t read = ::pread(number_, bytes.data(), bytes.size(), static_cast<off_t>(place));
        if (read < 0 && errno == EINTR)
            continue;
        if (read <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(read));
        place += static_cast<std::uint64_t>(read);
    }
    return true;
}

} // namespace genutil
