#pragma once

#include "hostif/value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// Job databases. Failures throw Error with the engine's number: TableNotFound, UnrecognisedDatabase,
// ItemNotFound (no such field), NoCurrentRecord, ReadOnlyDatabase, DatabaseLocked.
namespace genutil {

class Recordset {
public:
    virtual ~Recordset() = default;
    virtual std::int32_t RecordCount() = 0;
    virtual bool BOF() = 0;
    virtual bool EOF_() = 0; // the plain name is a macro of the C library
    virtual void MoveFirst() = 0;
    virtual void MoveNext() = 0;
    virtual void Edit() = 0;
    virtual void AddNew() = 0;
    virtual void Update() = 0;
    virtual Value field(std::string_view name) = 0;
    virtual void setField(std::string_view name, const Value& value) = 0;
};

class Database {
public:
    virtual ~Database() = default;
    virtual std::int16_t tableCount() = 0;
    virtual std::string tableName(std::int16_t index) = 0;
    // Read from the file only when asked for; the list of names is cheap.
    virtual std::int32_t tableRecordCount(std::int16_t index) = 0;
    virtual std::shared_ptr<Recordset> OpenRecordset(const std::string& table) = 0;
};

class DatabaseEngine {
public:
    virtual ~DatabaseEngine() = default;
    virtual std::shared_ptr<Database> OpenDatabase(
        const std::string& path, bool exclusive, bool readOnly) = 0;
};

// An engine that keeps what is read of databases that are opened read only, shared, and answers from that for
// as long as their files are the same. It is no slower and no less right where nothing can be kept.
class DatabaseMemory : public DatabaseEngine {
public:
    // Many databases were opened, and no more will be for some time: what was read of them outlives the
    // process.
    virtual void keep() = 0;
    // Gives up all that was kept, by other processes too.
    virtual void forget() = 0;
};

} // namespace genutil
