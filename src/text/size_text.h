#pragma once

#include <cstdint>
#include <string>

namespace genutil::text {

// A file's size for reading: "1 byte", "51 bytes", "9.0 KB", in steps of 1024.
std::string sizeText(std::uint64_t bytes);

} // namespace genutil::text
