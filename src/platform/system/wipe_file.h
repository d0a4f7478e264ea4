#pragma once

#include "hostif/desktop.h"

#include <memory>

namespace genutil {

// The file operations of this system. wipeFile overwrites the bytes that the file has when it starts; what a
// journal, a snapshot or a drive's own reserve keeps of them is out of its reach. It throws Error naming the
// path and the rule: FileNotFound; PathAccess for anything but a regular file and for a file with further
// names (hard links), whose owners would lose their contents too; PermissionDenied; DiskFull or DeviceError
// when writing fails.
std::unique_ptr<FileSystem> makeSystemFiles();

} // namespace genutil
