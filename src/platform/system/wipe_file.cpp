#include "platform/system/wipe_file.h"

#include "hostif/error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace genutil {
namespace {

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }

private:
    int number_;
};

[[noreturn]] void fail(const std::string& step, const std::string& path) {
    throw std::system_error(errno, std::generic_category(), step + " '" + path + "'");
}

[[noreturn]] void refuse(const std::string& path, const std::string& rule) {
    throw Error(errors::PathAccess, "'" + path + "' is not wiped: " + rule);
}

struct stat statusOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        fail("Cannot find", path);
    return status;
}

void check(const struct stat& status, const std::string& path) {
    if (S_ISLNK(status.st_mode))
        refuse(path, "it is a symbolic link, and the file behind it may belong to something else");
    if (!S_ISREG(status.st_mode))
        refuse(path, "only regular files are wiped");
    if (status.st_nlink > 1)
        refuse(path, "the file has further names (hard links), which would lose their contents too");
}

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

void overwrite(const Descriptor& file, off_t size, const std::string& path) {
    static constexpr std::array<char, 1 << 16> zeros{};
    while (size > 0) {
        const auto block = std::size_t(std::min<off_t>(size, off_t(zeros.size())));
        const ssize_t written = ::write(file.number(), zeros.data(), block);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            fail("Cannot overwrite", path);
        size -= written;
    }
    if (::fsync(file.number()) != 0)
        fail("Cannot store", path);
}

void wipe(const std::string& path) {
    // Looked at before it is opened: opening a device can already act on it.
    check(statusOf(path), path);
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.number() < 0)
        fail("Cannot open", path);
    struct stat opened {};
    if (::fstat(file.number(), &opened) != 0)
        fail("Cannot examine", path);
    check(opened, path); // another file may have taken the name meanwhile
    overwrite(file, opened.st_size, path);
    if (::ftruncate(file.number(), 0) != 0)
        fail("Cannot truncate", path);
    if (!sameFile(statusOf(path), opened))
        refuse(path, "another file took its name while it was overwritten");
    if (::unlink(path.c_str()) != 0)
        fail("Cannot remove", path);
}

class SystemFiles : public FileSystem {
public:
    void wipeFile(const std::string& path) override {
        // A name with a zero byte would be cut there by the system and might name another file.
        if (path.empty() || path.find('\0') != std::string::npos)
            throw Error(errors::BadFileName, "A file to wipe needs a name without zero bytes");
        try {
            wipe(path);
        } catch (...) {
            throw toError(std::current_exception());
        }
    }
};

} // namespace

std::unique_ptr<FileSystem> makeSystemFiles() {
    return std::make_unique<SystemFiles>();
}

} // namespace genutil
