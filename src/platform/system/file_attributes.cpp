#include "platform/system/file_attributes.h"

#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

#include <sys/xattr.h>

namespace genutil {
namespace {

constexpr const char* accessList = "system.posix_acl_access";

// The names, each ended by a zero byte; none where the file system has no attributes.
std::string attributeNames(int file) {
    const ssize_t size = ::flistxattr(file, nullptr, 0);
    std::string names(size > 0 ? std::size_t(size) : 0, '\0');
    const ssize_t came = ::flistxattr(file, names.data(), names.size());
    names.resize(came > 0 ? std::size_t(came) : 0);
    return names;
}

bool giveAttribute(int from, int to, const char* name) {
    const ssize_t size = ::fgetxattr(from, name, nullptr, 0);
    if (size < 0)
        return false;
    std::vector<char> value(std::size_t(size) + 1);
    const ssize_t came = ::fgetxattr(from, name, value.data(), value.size());
    return came >= 0 && ::fsetxattr(to, name, value.data(), std::size_t(came), 0) == 0;
}

} // namespace

bool giveOwner(const struct stat& from, int to) {
    struct stat present {};
    if (::fstat(to, &present) != 0)
        return false;
    const bool same = present.st_uid == from.st_uid && present.st_gid == from.st_gid;
    return same || ::fchown(to, from.st_uid, from.st_gid) == 0;
}

bool giveAttributes(const RegularFile& from, int to) {
    ::fremovexattr(to, accessList); // the folder may have given one
    if (::fchmod(to, from.status.st_mode & 07777) != 0)
        return false;
    const std::string names = attributeNames(from.file.number());
    for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
        const char* name = names.c_str() + at;
        const bool byUsers =
            std::string_view(name).starts_with("user.") || std::string_view(name) == accessList;
        if (!giveAttribute(from.file.number(), to, name) && byUsers)
            return false;
    }
    return true;
}

} // namespace genutil
