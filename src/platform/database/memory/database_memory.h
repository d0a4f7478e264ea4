#pragma once

#include "hostif/database.h"
#include "platform/database/database_engine.h"
#include "platform/database/file_state.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace genutil {

// What is read of a database is kept in a file, and answered from it for as long as the system says of the
// database that it is the same: its path, size, times and number, with nanoseconds. A job that was changed
// within two seconds before it was read, one with a log of changes beside it, and one that failed to answer
// are read from their files each time. Not seen: changes by a system that leaves size and times as they were,
// such as a write to the disk itself, and a file server whose clock runs behind and counts whole seconds.
//
// `file` gives the path of the file, in a folder of the user alone; asked when it is first needed, it may
// throw Error.
std::unique_ptr<DatabaseMemory> makeDatabaseMemory(std::function<std::string()> file,
    std::function<OpenedDatabase(const std::string& path)> openToRead = openToReadDatabase,
    std::function<std::int64_t()> clock = now);

} // namespace genutil
