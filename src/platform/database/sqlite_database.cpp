#include "platform/database/sqlite_database.h"

#include "hostif/error.h"
#include "platform/database/same_name.h"
#include "platform/database/sqlite_connection.h"
#include "platform/database/sqlite_recordset.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <system_error>

namespace genutil {
namespace {

// A file whose writers keep their latest changes in a log beside it is at rest when there is none: to read it
// as others would make a log, which stays behind, and needs a folder that may be written to.
sqlite::Access accessTo(const DatabaseFile& file, bool readOnly) {
    if (!readOnly)
        return sqlite::Access::ReadWrite;
    std::error_code none;
    const bool isAtRest = mayHaveLog(file) && !std::filesystem::exists(file.path() + "-wal", none);
    return isAtRest ? sqlite::Access::ReadAtRest : sqlite::Access::Read;
}

// Also of what a writer's log may hold.
bool isSmall(const std::string& path) {
    constexpr std::uintmax_t largestSmall = 2 * 1024 * 1024;
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    return !unknown && size <= largestSmall && !std::filesystem::exists(path + "-wal", unknown);
}

class SqliteDatabase : public Database {
public:
    SqliteDatabase(const DatabaseFile& file, bool exclusive, bool readOnly)
        : connection_(
              std::make_shared<sqlite::Connection>(file.path(), exclusive, accessTo(file, readOnly))) {
        // Computed fields are declared by "AS (...)", whatever stands between the two.
        sqlite::Statement list(*connection_, "SELECT name, sql LIKE '%as%(%' FROM sqlite_master WHERE type = "
                                             "'table' AND name NOT LIKE 'sqlite\\_%' "
                                             "ESCAPE '\\' AND name <> '' ORDER BY rowid");
        while (list.next() && tables_.size() < std::numeric_limits<std::int16_t>::max())
            if (const auto name = list.value(0))
                tables_.push_back({name->toText(), list.number(1) != 0});
        isSmall_ = isSmall(file.path());
    }

    std::int16_t tableCount() override { return static_cast<std::int16_t>(tables_.size()); }
    std::string tableName(std::int16_t index) override {
        if (index < 0 || static_cast<std::size_t>(index) >= tables_.size())
            throw Error(errors::ItemNotFound, "'" + connection_->path() + "' has no table number " +
                                                  std::to_string(index) + ": it has " +
                                                  std::to_string(tables_.size()));
        return tables_[static_cast<std::size_t>(index)].name;
    }
    std::int32_t tableRecordCount(std::int16_t index) override {
        sqlite::Statement count(*connection_, "SELECT COUNT(*) FROM " + sqlite::quoted(tableName(index)));
        count.next();
        return static_cast<std::int32_t>(
            std::min<std::int64_t>(count.number(0), std::numeric_limits<std::int32_t>::max()));
    }
    std::shared_ptr<Recordset> OpenRecordset(const std::string& table) override {
        for (const Table& each : tables_)
            if (isSameName(each.name, table))
                return std::make_shared<sqlite::RecordsetOfTable>(
                    connection_, each.name, isSmall_ && !each.mayCompute);
        throw Error(errors::TableNotFound, "'" + connection_->path() + "' has no table '" + table + "'");
    }

private:
    struct Table {
        std::string name;
        bool mayCompute = false;
    };
    std::shared_ptr<sqlite::Connection> connection_;
    std::vector<Table> tables_;
    bool isSmall_ = false; // no field can hold much
};

} // namespace

bool isSqlite(const DatabaseFile& file) {
    return file.head().starts_with(std::string_view("SQLite format 3\0", 16));
}

bool mayHaveLog(const DatabaseFile& file) {
    constexpr std::size_t readVersion = 19;
    constexpr char withLog = 2;
    return file.head().size() > readVersion && file.head()[readVersion] == withLog;
}

std::shared_ptr<Database> openSqliteDatabase(const DatabaseFile& file, bool exclusive, bool readOnly) {
    return std::make_shared<SqliteDatabase>(file, exclusive, readOnly);
}

} // namespace genutil
