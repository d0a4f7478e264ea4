#pragma once

#include "platform/system/descriptor.h"

#include <string>

#include <sys/stat.h>

namespace genutil {

// An open regular file and what the system knows about it; not open when there is none of its name.
struct RegularFile {
    Descriptor file;
    struct stat status {};
    std::string path;
};

enum class Links { Follow, Refuse };

// Opens a regular file with `flags`, never waiting for the other end of a pipe and never acting on a device.
// Throws Error: PathAccess for anything but a regular file, PathNotFound for a missing folder,
// PermissionDenied. `isNot` ends the sentence "'path' is not": "opened".
RegularFile openIfThere(const std::string& path, int flags, Links links, const std::string& isNot);
// The same, where a missing file is a failure too: FileNotFound.
RegularFile openExisting(const std::string& path, int flags, const std::string& isNot);

bool isSameFile(const struct stat& a, const struct stat& b);

// The folder that the name is in; "." for a bare name.
std::string folderOf(const std::string& path);
// The name without its folder.
std::string nameOf(const std::string& path);

} // namespace genutil
