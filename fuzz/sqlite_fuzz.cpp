// As jet_fuzz, for files that begin as an SQLite database: its first bytes stand before the input.

#include "database_input.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes("SQLite format 3\0", 16);
    bytes.append(reinterpret_cast<const char*>(data), size);
    genutil::fuzz::readDatabase(bytes);
    return 0;
}
