// Any bytes may stand in a job database: all that can be read from it is a value or an error that says so.

#include "platform/database/database_engine.h"
#include "support/read_database.h"

#include <cstdint>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto engine = genutil::makeDatabaseEngine();
    static const int file = ::memfd_create("job", 0);
    if (::ftruncate(file, 0) != 0 || ::pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
        std::abort();
    try {
        genutil::test::readAll(*engine, "/proc/self/fd/" + std::to_string(file));
    } catch (const genutil::Error&) {
        // an SQLite file can ask for files beside it, which this place has not
    }
    return 0;
}
