#pragma once

#include "hostif/database.h"
#include "hostif/error.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace genutil::fake {

using FakeRow = std::map<std::string, Value, std::less<>>;

struct FakeTable {
    std::string name;
    std::vector<FakeRow> records;
};

// Job databases in memory, by their whole path; a path without one is no database. Every operation is logged
// as "OpenDatabase /jobs/a.gdb" or "field Zone" and can be told to fail under that key.
struct FakeDatabases : DatabaseEngine {
    std::map<std::string, std::vector<FakeTable>> files;
    std::vector<std::string> log;
    std::map<std::string, Error> failures;
    std::function<void()> onOpen; // runs as each database is opened
    int open = 0;                 // databases and recordsets
    int mostOpen = 0;             // at any time

    std::shared_ptr<Database> OpenDatabase(const std::string& path, bool exclusive, bool readOnly) override;

    void start(const std::string& operation) {
        log.push_back(operation);
        if (const auto found = failures.find(operation); found != failures.end())
            throw found->second;
    }
};

// Counts what is open.
struct Opened {
    FakeDatabases& engine;
    explicit Opened(FakeDatabases& owner) : engine(owner) {
        engine.mostOpen = std::max(engine.mostOpen, ++engine.open);
    }
    ~Opened() { --engine.open; }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
};

struct FakeRecordset : Recordset, Opened {
    std::vector<FakeRow>& records;
    std::size_t at = 0;
    FakeRow edited;
    bool adding = false;

    FakeRecordset(FakeDatabases& owner, std::vector<FakeRow>& rows) : Opened(owner), records(rows) {}
    std::int32_t RecordCount() override { return std::int32_t(records.size()); }
    bool BOF() override { return records.empty(); }
    bool EOF_() override { return at >= records.size(); }
    void MoveFirst() override { at = 0; }
    void MoveNext() override { ++at; }
    void Edit() override { edited = current(); }
    void AddNew() override {
        edited.clear();
        adding = true;
    }
    void Update() override {
        (adding ? records.emplace_back() : current()) = edited;
        adding = false;
    }
    Value field(std::string_view name) override {
        engine.start("field " + std::string(name));
        const auto found = current().find(name);
        if (found == current().end())
            throw Error(errors::ItemNotFound, "No field '" + std::string(name) + "'");
        return found->second;
    }
    void setField(std::string_view name, const Value& value) override { edited[std::string(name)] = value; }

private:
    FakeRow& current() {
        if (EOF_())
            throw Error(errors::NoCurrentRecord);
        return records[at];
    }
};

struct FakeDatabase : Database, Opened {
    std::vector<FakeTable>& tables;
    FakeDatabase(FakeDatabases& owner, std::vector<FakeTable>& all) : Opened(owner), tables(all) {}
    std::int16_t tableCount() override { return std::int16_t(tables.size()); }
    std::string tableName(std::int16_t index) override {
        const std::string& name = tables.at(std::size_t(index)).name;
        engine.start("tableName " + name);
        return name;
    }
    std::int32_t tableRecordCount(std::int16_t index) override {
        return std::int32_t(tables.at(std::size_t(index)).records.size());
    }
    std::shared_ptr<Recordset> OpenRecordset(const std::string& table) override {
        engine.start("OpenRecordset " + table);
        const auto found = std::ranges::find(tables, table, &FakeTable::name);
        if (found == tables.end())
            throw Error(errors::TableNotFound, "No table '" + table + "'");
        return std::make_shared<FakeRecordset>(engine, found->records);
    }
};

inline std::shared_ptr<Database> FakeDatabases::OpenDatabase(
    const std::string& path, bool exclusive, bool readOnly) {
    if (onOpen)
        onOpen();
    start("OpenDatabase " + path + (exclusive ? " exclusive" : "") + (readOnly ? " read-only" : ""));
    const auto found = files.find(path);
    if (found == files.end())
        throw Error(errors::UnrecognisedDatabase, "'" + path + "' is no database");
    return std::make_shared<FakeDatabase>(*this, found->second);
}

} // namespace genutil::fake
