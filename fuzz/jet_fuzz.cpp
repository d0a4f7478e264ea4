// Any bytes may stand in a job database: all that can be read from it is a value or an error that says so.

#include "database_input.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    genutil::fuzz::readDatabase({reinterpret_cast<const char*>(data), size});
    return 0;
}
