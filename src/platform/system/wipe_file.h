#pragma once

#include <string>

namespace genutil {

// Overwrites the bytes that the file has when it starts, truncates and removes it; what a journal, a snapshot
// or a drive's own reserve keeps of them is out of its reach. Throws Error naming the path and the rule:
// FileNotFound; PathAccess for anything but a regular file and for a file with further names (hard links),
// whose owners would lose their contents too; PermissionDenied; DiskFull or DeviceError when writing fails.
void wipeFile(const std::string& path);

} // namespace genutil
