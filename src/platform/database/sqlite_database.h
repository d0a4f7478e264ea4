#pragma once

#include "hostif/database.h"
#include "platform/database/database_file.h"

#include <memory>

namespace genutil {

bool isSqlite(const DatabaseFile& file);
// Of an SQLite file: its writers keep their latest changes in a log beside it.
bool mayHaveLog(const DatabaseFile& file);

// The tables in the order of their making. Throws Error DatabaseLocked when another program holds the file,
// and UnrecognisedDatabase when its list of tables cannot be read.
std::shared_ptr<Database> openSqliteDatabase(const DatabaseFile& file, bool exclusive, bool readOnly);

} // namespace genutil
