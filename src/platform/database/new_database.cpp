#include "platform/database/new_database.h"

#include "hostif/error.h"
#include "platform/database/sqlite_connection.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

constexpr int pageSize = 1024; // bytes: each of a job's many small tables takes a page of its own

const char* sqlType(ColumnType type) {
    switch (type) {
    case ColumnType::Integer:
        return "INTEGER";
    case ColumnType::Real:
        return "REAL";
    case ColumnType::Boolean:
        return "BOOLEAN";
    case ColumnType::Text:
        break;
    }
    return "TEXT";
}

void addRecord(const sqlite::Connection& database, const NewTable& table, const NewTable::Record& record) {
    std::string names;
    std::string marks;
    for (const auto& [name, value] : record) {
        // A name in double quotes that is no column would be taken as a text.
        if (std::ranges::find(table.columns, name, &NewColumn::name) == table.columns.end())
            throw Error(errors::InvalidCall, "The table '" + table.name + "' has no column '" + name + "'");
        names += (names.empty() ? "" : ", ") + sqlite::quoted(name);
        marks += marks.empty() ? "?" : ", ?";
    }
    sqlite::Statement insert(
        database, "INSERT INTO " + sqlite::quoted(table.name) + " (" + names + ") VALUES (" + marks + ")");
    int parameter = 0;
    for (const auto& [name, value] : record)
        insert.bind(parameter++, value);
    insert.next();
}

void makeTables(const std::string& emptyFile, std::span<const NewTable> tables) {
    const sqlite::Connection database(emptyFile, false, sqlite::Access::ReadWrite);
    const auto run = [&](const std::string& sql) { sqlite::Statement(database, sql).next(); };
    run("PRAGMA page_size = " + std::to_string(pageSize));
    // Nobody else sees the file yet, and it is flushed as a whole: no journal has to stand beside it.
    run("PRAGMA journal_mode = MEMORY");
    run("PRAGMA synchronous = OFF");
    run("BEGIN");
    for (const NewTable& table : tables) {
        std::string columns;
        for (const NewColumn& column : table.columns)
            columns +=
                (columns.empty() ? "" : ", ") + sqlite::quoted(column.name) + " " + sqlType(column.type);
        run("CREATE TABLE " + sqlite::quoted(table.name) + " (" + columns + ")");
        for (const NewTable::Record& record : table.records)
            addRecord(database, table, record);
    }
    run("COMMIT");
}

[[noreturn]] void fail(const std::string& path, int code) {
    if (code == EEXIST)
        throw Error(errors::FileExists, "'" + path + "' exists already");
    throw toError(std::make_exception_ptr(
        std::system_error(code, std::generic_category(), "Cannot make '" + path + "'")));
}

// An empty file under a hidden name in the folder; the name goes when the object does.
class TemporaryFile {
public:
    // errno tells why it is not open.
    explicit TemporaryFile(const fs::path& folder)
        : name_((folder / (".new-job-" + std::to_string(std::random_device()()))).string()),
          number_(::open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {}
    ~TemporaryFile() {
        if (!isOpen())
            return;
        ::unlink(name_.c_str());
        ::close(number_);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool isOpen() const { return number_ >= 0; }
    const std::string& name() const { return name_; }
    bool flush() const { return ::fsync(number_) == 0; }
    // Gives the file a name that nothing has yet. File systems without second names do it by renaming.
    bool takeName(const std::string& name) const {
        if (::link(name_.c_str(), name.c_str()) == 0)
            return true;
        if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS)
            return false;
        return ::renameat2(AT_FDCWD, name_.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0;
    }

private:
    std::string name_;
    int number_;
};

void flushFolder(const fs::path& folder) {
    const int number = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (number < 0)
        return; // one that may be written to but not read
    ::fsync(number);
    ::close(number);
}

void checkName(const std::string& path) {
    const fs::path target(path);
    if (path.find('\0') != std::string::npos || !target.has_filename() || target.filename() == "." ||
        target.filename() == "..")
        throw Error(errors::BadFileName, "'" + path + "' is not the name of a file");
    std::error_code reason;
    const fs::path folder = target.parent_path();
    if (!folder.empty() && !fs::is_directory(folder, reason) && reason != std::errc::permission_denied)
        throw Error(errors::PathNotFound, "The folder '" + folder.string() + "' does not exist");
    if (fs::exists(fs::symlink_status(target, reason))) // also a link that leads nowhere
        fail(path, EEXIST);
}

} // namespace

void createSqliteDatabase(const std::string& path, std::span<const NewTable> tables) {
    checkName(path);
    const fs::path parent = fs::path(path).parent_path();
    const fs::path folder = parent.empty() ? fs::path(".") : parent;
    const TemporaryFile file(folder);
    if (!file.isOpen())
        fail(path, errno);
    try {
        makeTables(file.name(), tables);
    } catch (const Error& error) {
        std::string text = error.description();
        if (const auto at = text.find(file.name()); at != text.npos)
            text.replace(at, file.name().size(), path);
        throw Error(error.number(), text);
    }
    if (!file.flush() || !file.takeName(path))
        fail(path, errno);
    flushFolder(folder);
}

} // namespace genutil
