#include "platform/system/temporary_file.h"

#include "platform/system/save_steps.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <random>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view randomLetters = "abcdefghijklmnopqrstuvwxyz012345";
constexpr std::size_t randomSize = 8;

std::string randomName() {
    std::random_device chance;
    std::string name;
    while (name.size() < randomSize)
        name += randomLetters[chance() % randomLetters.size()];
    return name;
}

// Whether the locked file still has a name: it may have been taken for a leftover before it was locked.
bool hasName(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 && status.st_nlink > 0;
}

void removeIfLeft(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    const Descriptor left(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    if (left.isOpen() && lockNow(left.number()))
        ::unlink(path.c_str());
}

} // namespace

bool NamePattern::matches(const std::string& name) const {
    if (name.size() != prefix.size() + randomSize + suffix.size() || !name.starts_with(prefix) ||
        !name.ends_with(suffix))
        return false;
    const auto random = name.substr(prefix.size(), randomSize);
    return random.find_first_not_of(randomLetters) == std::string::npos;
}

TemporaryFile::TemporaryFile(const NamePattern& pattern, mode_t mode) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const std::string path = fs::path(pattern.folder) / (pattern.prefix + randomName() + pattern.suffix);
        beforeStep("make temporary file");
        Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        if (!file.isOpen() && errno == EEXIST)
            continue;
        if (!file.isOpen())
            return;
        beforeStep("lock temporary file");
        if (!lockNow(file.number()) && errno == EWOULDBLOCK)
            continue;
        if (!hasName(file.number()))
            continue;
        file_ = std::move(file);
        path_ = path;
        return;
    }
    errno = EEXIST;
}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : file_(std::move(other.file_)), path_(std::exchange(other.path_, {})) {}

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept {
    std::swap(file_, other.file_);
    std::swap(path_, other.path_);
    return *this;
}

TemporaryFile::~TemporaryFile() {
    if (!path_.empty())
        ::unlink(path_.c_str());
}

bool TemporaryFile::renameTo(const std::string& path) {
    if (::rename(path_.c_str(), path.c_str()) != 0)
        return false;
    path_.clear();
    return true;
}

bool lockNow(int file) {
    return ::flock(file, LOCK_EX | LOCK_NB) == 0;
}

void removeLeftovers(const NamePattern& pattern) {
    std::error_code unreadable;
    std::vector<std::string> left;
    for (fs::directory_iterator entry(pattern.folder, unreadable), end; !unreadable && entry != end;
         entry.increment(unreadable)) {
        if (pattern.matches(entry->path().filename()))
            left.push_back(entry->path());
    }
    std::ranges::for_each(left, removeIfLeft);
}

std::string cutName(const std::string& name, const std::string& folder, std::size_t others) {
    constexpr std::size_t usualLimit = 255;
    const long limit = ::pathconf(folder.c_str(), _PC_NAME_MAX);
    const std::size_t room = limit > 0 ? std::size_t(limit) : usualLimit;
    std::size_t size = room > others + randomSize ? room - others - randomSize : 0;
    if (size >= name.size())
        return name;
    while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xC0u) == 0x80u)
        --size;
    return name.substr(0, size);
}

} // namespace genutil
