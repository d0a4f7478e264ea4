#include "platform/system/regular_file.h"

#include "hostif/error.h"
#include "platform/system/failures.h"

#include <cerrno>
#include <filesystem>

#include <fcntl.h>

namespace genutil {
namespace {

void check(const struct stat& status, const std::string& path, const std::string& isNot) {
    if (S_ISDIR(status.st_mode))
        refuse(path, isNot, "it is a folder");
    if (!S_ISREG(status.st_mode))
        refuse(path, isNot, "only regular files are");
}

// The file is missing: because of its folder?
void checkFolder(const std::string& path) {
    struct stat folder {};
    if (::stat(folderOf(path).c_str(), &folder) != 0 && errno == ENOENT)
        throw Error(errors::PathNotFound, "The folder of '" + path + "' does not exist");
    errno = ENOENT;
}

} // namespace

RegularFile openIfThere(const std::string& path, int flags, Links links, const std::string& isNot) {
    RegularFile found{Descriptor(), {}, path};
    // Looked at before it is opened: opening a pipe or a device can already act on it.
    const int seen =
        links == Links::Follow ? ::stat(path.c_str(), &found.status) : ::lstat(path.c_str(), &found.status);
    if (seen != 0 && errno == ENOENT) {
        checkFolder(path);
        return found;
    }
    if (seen != 0)
        fail("Cannot find", path);
    check(found.status, path, isNot);
    const int noLinks = links == Links::Follow ? 0 : O_NOFOLLOW;
    found.file = Descriptor(::open(path.c_str(), flags | noLinks | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!found.file.isOpen() && errno != ENOENT)
        fail("Cannot open", path);
    if (!found.file.isOpen())
        return found;
    if (::fstat(found.file.number(), &found.status) != 0)
        fail("Cannot examine", path);
    check(found.status, path, isNot); // another file may have taken the name meanwhile
    return found;
}

RegularFile openExisting(const std::string& path, int flags, const std::string& isNot) {
    RegularFile found = openIfThere(path, flags, Links::Follow, isNot);
    if (!found.file.isOpen())
        fail("Cannot find", path);
    return found;
}

bool isSameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::string folderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder;
}

std::string nameOf(const std::string& path) {
    return std::filesystem::path(path).filename();
}

} // namespace genutil
