#pragma once

#include <string>

namespace genutil {

// FileSystem::copyFile. A file that is made gets the source's permissions, without the right to run as
// another user.
void copyFile(const std::string& from, const std::string& to);

} // namespace genutil
