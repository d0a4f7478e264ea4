#include "platform/system/wipe_file.h"

#include "platform/system/descriptor.h"
#include "platform/system/failures.h"
#include "platform/system/regular_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace genutil {
namespace {

constexpr const char* notWiped = "wiped";

struct stat statusOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        fail("Cannot find", path);
    return status;
}

void check(const struct stat& status, const std::string& path) {
    if (S_ISLNK(status.st_mode))
        refuse(path, notWiped, "it is a symbolic link, and the file behind it may belong to something else");
    if (!S_ISREG(status.st_mode))
        refuse(path, notWiped, "only regular files are wiped");
    if (status.st_nlink > 1)
        refuse(
            path, notWiped, "the file has further names (hard links), which would lose their contents too");
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
    if (!isSameFile(statusOf(path), opened))
        refuse(path, notWiped, "another file took its name while it was overwritten");
    if (::unlink(path.c_str()) != 0)
        fail("Cannot remove", path);
}

} // namespace

void wipeFile(const std::string& path) {
    checkName(path);
    wipe(path);
}

} // namespace genutil
