#pragma once

#include <filesystem>
#include <string>

namespace genutil::text {

// All bytes of a regular file, allocated once at the file's size. A file that changes while it is read gives
// the bytes up to the end that reading meets. Errors as TextDocument::read states them.
std::string readFileBytes(const std::filesystem::path& path);

} // namespace genutil::text
