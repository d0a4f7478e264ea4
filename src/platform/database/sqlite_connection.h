#pragma once

#include "hostif/value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace genutil::sqlite {

enum class Access {
    ReadWrite,
    Read,
    ReadAtRest // of a file that nobody writes: without locks, and without the files that writers keep beside
               // it
};

// An open database. What the file itself brings along, triggers and views, is not run. No text of more than
// 2 MB is read, and a reader's statement that computes for longer than a second is given up: a file may hold
// columns that are computed.
class Connection {
public:
    // Throws as statements do.
    Connection(const std::string& path, bool exclusive, Access access);

    const std::string& path() const { return path_; }
    bool isReadOnly() const { return access_ != Access::ReadWrite; }
    std::int64_t lastRow() const;
    sqlite3* handle() const { return handle_.get(); }
    // Throws the Error for the library's result code, naming the file: DatabaseLocked, ReadOnlyDatabase,
    // UnrecognisedDatabase for a damaged file, DiskFull, InvalidCall for what a table does not allow.
    [[noreturn]] void fail(int code) const;
    // A statement begins, or goes on.
    void startClock() const;

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };
    void setLimits();

    std::string path_;
    Access access_;
    mutable std::int64_t until_ = 0; // nanoseconds of the thread's computing; 0: without end
    std::unique_ptr<sqlite3, Close> handle_;
};

// A change of several steps, which others see whole or not at all; nobody else writes from its beginning to
// its end. Undone unless it is committed. Throws as statements do.
class Transaction {
public:
    explicit Transaction(const Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    const Connection& connection_;
    bool isOpen_ = true;
};

// One SQL statement; the connection must live longer.
class Statement {
public:
    Statement(const Connection& connection, const std::string& sql);

    // Parameters and columns are counted from 0.
    void bind(int parameter, const Value& value);
    void bind(int parameter, std::int64_t value);
    // The bytes stay where they are until the next step.
    void bindBytes(int parameter, std::string_view bytes);
    // Goes to the next row; false behind the last.
    bool next();
    // Before the first row again, with the database given free; parameters can be bound anew.
    void reset();

    int columnCount() const;
    std::string columnName(int column) const;
    // "" for none.
    std::string declaredType(int column) const;
    // A whole number is a long integer or, beyond its range, a double; Boolean where that is said. Nothing
    // for a binary.
    std::optional<Value> value(int column, bool isBoolean = false) const;
    std::int64_t number(int column) const;
    // As they are stored; there until the next step.
    std::string_view bytes(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    void check(int code) const;

    const Connection& connection_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// A name as SQL takes it, whatever characters it has.
std::string quoted(std::string_view name);

} // namespace genutil::sqlite
