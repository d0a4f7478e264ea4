#pragma once

#include "hostif/value.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace genutil {

enum class ColumnType { Text, Integer, Real, Boolean };

struct NewColumn {
    std::string name;
    ColumnType type;
};

// A table to be made, and the records that it begins with: each a list of column names with their values; the
// columns that it leaves out are Null.
struct NewTable {
    using Record = std::vector<std::pair<std::string, Value>>;

    std::string name;
    std::vector<NewColumn> columns;
    std::vector<Record> records;
};

// Makes an SQLite database with these tables. The file appears under its name only when it is whole and on
// the disk; what a crash can leave is a hidden file beside it. Throws Error: FileExists, never touching what
// has the name; PathNotFound for a missing folder; PermissionDenied, DiskFull and others of the system,
// naming the file; InvalidCall for a record with a column that its table does not have.
void createSqliteDatabase(const std::string& path, std::span<const NewTable> tables);

} // namespace genutil
