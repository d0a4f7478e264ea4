#pragma once

#include "platform/database/database_engine.h"
#include "support/read_database.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

namespace genutil::fuzz {

// Reads all of a database of these bytes, from a file that is in memory only.
inline void readDatabase(std::string_view bytes) {
    static const auto engine = makeDatabaseEngine();
    static const int file = ::memfd_create("job", 0);
    if (::ftruncate(file, 0) != 0 ||
        ::pwrite(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        std::abort();
    try {
        test::readAll(*engine, "/proc/self/fd/" + std::to_string(file));
    } catch (const Error&) {
        // an SQLite file can ask for files beside it, which this place has not
    }
}

} // namespace genutil::fuzz
