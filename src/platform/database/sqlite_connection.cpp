#include "platform/database/sqlite_connection.h"

#include "hostif/error.h"
#include "text/utf8.h"

#include <ctime>
#include <limits>
#include <utility>

#include <sqlite3.h>

namespace genutil::sqlite {
namespace {

constexpr int waitForOthers = 200; // milliseconds

constexpr std::int64_t longestComputing = 1'000'000'000; // nanoseconds
constexpr int stepsBetweenLooks = 200;                   // of the library's machine, at the clock

// What a job's file is read with. Names are the library's.
constexpr std::pair<int, int> limits[] = {{SQLITE_LIMIT_LENGTH, 2 * 1024 * 1024},
    {SQLITE_LIMIT_SQL_LENGTH, 1'000'000}, {SQLITE_LIMIT_EXPR_DEPTH, 100}, {SQLITE_LIMIT_COMPOUND_SELECT, 10},
    {SQLITE_LIMIT_ATTACHED, 0}, {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 100}, {SQLITE_LIMIT_TRIGGER_DEPTH, 1},
    {SQLITE_LIMIT_WORKER_THREADS, 0}};

// Time that the thread waits for a disk or a network does not count.
std::int64_t computedTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::int64_t(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

int errorNumber(int code) {
    switch (code & 0xFF) { // the rest of the code tells more than an error number can
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return errors::DatabaseLocked;
    case SQLITE_READONLY:
        return errors::ReadOnlyDatabase;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
    case SQLITE_INTERRUPT:
    case SQLITE_TOOBIG:
    case SQLITE_ERROR: // our statements are sound: the tables they name are not
        return errors::UnrecognisedDatabase;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
        return errors::InvalidCall;
    case SQLITE_FULL:
        return errors::DiskFull;
    case SQLITE_NOMEM:
        return errors::OutOfMemory;
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return errors::PermissionDenied;
    case SQLITE_CANTOPEN:
        return errors::PathAccess;
    default:
        return errors::DeviceError;
    }
}

std::string validText(std::string_view bytes) {
    if (text::isValidUtf8(bytes))
        return std::string(bytes);
    std::string valid;
    for (std::size_t i = 0; i < bytes.size();) {
        const text::DecodedCharacter character = text::decodeUtf8(bytes, i);
        text::appendUtf8(valid, character.codePoint);
        i += character.length;
    }
    return valid;
}

// A name that began with "file:" would be an address, one that began with ":" a database in memory.
std::string unmistakable(const std::string& path) {
    return path.starts_with('/') ? path : "./" + path;
}

std::string addressAtRest(const std::string& path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string address = "file:";
    for (const char c : unmistakable(path)) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '%' || c == '?' || c == '#')
            address.append(1, '%').append(1, digits[byte >> 4]).append(1, digits[byte & 15]);
        else
            address += c;
    }
    return address + "?immutable=1";
}

} // namespace

void Connection::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

Connection::Connection(const std::string& path, bool exclusive, Access access)
    : path_(path), access_(access) {
    sqlite3* opened = nullptr;
    const std::string name = access == Access::ReadAtRest ? addressAtRest(path) : unmistakable(path);
    const int flags = isReadOnly() ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    const int code = sqlite3_open_v2(
        name.c_str(), &opened, flags | (access == Access::ReadAtRest ? SQLITE_OPEN_URI : 0), nullptr);
    handle_.reset(opened);
    if (code != SQLITE_OK)
        fail(code);
    sqlite3_extended_result_codes(opened, 1);
    for (const int isOff :
        {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_TRUSTED_SCHEMA})
        sqlite3_db_config(opened, isOff, 0, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    setLimits();
    Statement(*this, "PRAGMA cell_size_check = ON").next();
    sqlite3_busy_timeout(opened, waitForOthers);
    if (exclusive) {
        // The lock is taken with the first change and then kept for as long as the database is open.
        Statement(*this, "PRAGMA locking_mode = EXCLUSIVE").next();
        if (!isReadOnly()) {
            Statement(*this, "BEGIN EXCLUSIVE").next();
            Statement(*this, "COMMIT").next();
        }
    }
}

void Connection::setLimits() {
    for (const auto& [limit, most] : limits)
        sqlite3_limit(handle_.get(), limit, most);
    if (!isReadOnly())
        return;
    const auto isOver = [](void* connection) {
        const std::int64_t until = static_cast<const Connection*>(connection)->until_;
        return int(until != 0 && computedTime() > until);
    };
    sqlite3_progress_handler(handle_.get(), stepsBetweenLooks, isOver, this);
}

void Connection::startClock() const {
    if (isReadOnly())
        until_ = computedTime() + longestComputing;
}

std::int64_t Connection::lastRow() const {
    return sqlite3_last_insert_rowid(handle_.get());
}

void Connection::fail(int code) const {
    const std::string name = "'" + path_ + "': ";
    if ((code & 0xFF) == SQLITE_INTERRUPT)
        throw Error(errorNumber(code), name + "reading it takes more than a second of computing");
    // Only who may write can finish or undo what a program was doing to the file when it ended.
    if (isReadOnly() && (code & 0xFF) == SQLITE_READONLY)
        throw Error(errors::DatabaseLocked,
            name +
                "another program has left it in the middle of a change, or is in one: it must be opened for "
                "writing first");
    throw Error(errorNumber(code), name + (handle_ ? sqlite3_errmsg(handle_.get()) : sqlite3_errstr(code)));
}

Transaction::Transaction(const Connection& connection) : connection_(connection) {
    Statement(connection, "BEGIN IMMEDIATE").next();
}

Transaction::~Transaction() {
    if (isOpen_)
        sqlite3_exec(connection_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    Statement(connection_, "COMMIT").next();
    isOpen_ = false;
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(const Connection& connection, const std::string& sql) : connection_(connection) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(
        connection.handle(), sql.c_str(), static_cast<int>(sql.size()), &statement, nullptr);
    statement_.reset(statement);
    check(code);
}

void Statement::check(int code) const {
    if (code != SQLITE_OK)
        connection_.fail(code);
}

void Statement::bind(int parameter, std::int64_t value) {
    check(sqlite3_bind_int64(statement_.get(), parameter + 1, value));
}

void Statement::bindBytes(int parameter, std::string_view bytes) {
    check(sqlite3_bind_blob64(statement_.get(), parameter + 1, bytes.data(), bytes.size(), SQLITE_STATIC));
}

void Statement::bind(int parameter, const Value& value) {
    if (value.isNull())
        check(sqlite3_bind_null(statement_.get(), parameter + 1));
    else if (value.isText()) {
        const std::string text = value.toText();
        check(sqlite3_bind_text64(
            statement_.get(), parameter + 1, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    } else if (std::holds_alternative<float>(value.storage()) ||
               std::holds_alternative<double>(value.storage()))
        check(sqlite3_bind_double(statement_.get(), parameter + 1, value.toDouble()));
    else
        bind(parameter, std::int64_t(value.toInt32()));
}

bool Statement::next() {
    connection_.startClock();
    const int code = sqlite3_step(statement_.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        connection_.fail(code);
    return code == SQLITE_ROW;
}

void Statement::reset() {
    sqlite3_reset(statement_.get()); // tells again what next() has thrown already
}

int Statement::columnCount() const {
    return sqlite3_column_count(statement_.get());
}

std::string Statement::columnName(int column) const {
    const char* name = sqlite3_column_name(statement_.get(), column);
    return name ? validText(name) : std::string();
}

std::string Statement::declaredType(int column) const {
    const char* type = sqlite3_column_decltype(statement_.get(), column);
    return type ? validText(type) : std::string();
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::string_view Statement::bytes(int column) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
    return {bytes ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

std::optional<Value> Statement::value(int column, bool isBoolean) const {
    sqlite3_stmt* const row = statement_.get();
    switch (sqlite3_column_type(row, column)) {
    case SQLITE_NULL:
        return Null();
    case SQLITE_FLOAT:
        return sqlite3_column_double(row, column);
    case SQLITE_INTEGER: {
        const std::int64_t number = sqlite3_column_int64(row, column);
        if (isBoolean)
            return number != 0;
        if (number < std::numeric_limits<std::int32_t>::min() ||
            number > std::numeric_limits<std::int32_t>::max())
            return static_cast<double>(number);
        return static_cast<std::int32_t>(number);
    }
    case SQLITE_TEXT: {
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
        return validText({bytes ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(row, column))});
    }
    default:
        return std::nullopt;
    }
}

std::string quoted(std::string_view name) {
    std::string sql = "\"";
    for (const char c : name)
        sql.append(c == '"' ? 2 : 1, c);
    return sql + '"';
}

} // namespace genutil::sqlite
