#include "platform/database/memory/remembered_database.h"

#include "hostif/error.h"
#include "platform/database/same_name.h"

#include <algorithm>
#include <utility>

namespace genutil::memory {
namespace {

class RememberedRecordset : public Recordset {
public:
    RememberedRecordset(RecordFacts facts, std::function<std::shared_ptr<Recordset>()> open)
        : facts_(std::move(facts)), open_(std::move(open)) {}

    std::int32_t RecordCount() override { return real_ ? real_->RecordCount() : facts_.recordCount; }
    bool BOF() override { return real_ ? real_->BOF() : facts_.isBof; }
    bool EOF_() override { return real_ ? real_->EOF_() : facts_.isEof; }
    Value field(std::string_view name) override {
        const FieldFacts* known = real_ ? nullptr : fact(name);
        if (!known)
            return real().field(name);
        if (const auto* missing = std::get_if<std::string>(&known->value))
            throw Error(errors::ItemNotFound, *missing);
        return std::get<Value>(known->value);
    }
    void MoveFirst() override { real().MoveFirst(); }
    void MoveNext() override { real().MoveNext(); }
    void Edit() override { real().Edit(); }
    void AddNew() override { real().AddNew(); }
    void Update() override { real().Update(); }
    void setField(std::string_view name, const Value& value) override { real().setField(name, value); }

private:
    // Whoever reads a record asks for its fields in the same order each time.
    const FieldFacts* fact(std::string_view name) {
        const auto isNamed = [name](const FieldFacts& field) {
            return field.name == name || isSameName(field.name, name);
        };
        if (next_ == facts_.fields.size() || !isNamed(facts_.fields[next_]))
            next_ = std::size_t(std::ranges::find_if(facts_.fields, isNamed) - facts_.fields.begin());
        return next_ == facts_.fields.size() ? nullptr : &facts_.fields[next_++];
    }
    Recordset& real() {
        if (!real_)
            real_ = open_();
        return *real_;
    }

    RecordFacts facts_;
    std::size_t next_ = 0;
    std::function<std::shared_ptr<Recordset>()> open_;
    std::shared_ptr<Recordset> real_;
};

class RememberedDatabase : public Database {
public:
    RememberedDatabase(Facts facts, OpenAgain openAgain)
        : facts_(std::move(facts)), real_(std::make_shared<Real>(std::move(openAgain))) {}

    std::int16_t tableCount() override { return static_cast<std::int16_t>(facts_.tables.size()); }
    std::string tableName(std::int16_t index) override {
        return isThere(index) ? facts_.tables[std::size_t(index)].name : real_->get().tableName(index);
    }
    std::int32_t tableRecordCount(std::int16_t index) override {
        const auto known = isThere(index) ? facts_.tables[std::size_t(index)].recordCount : std::nullopt;
        return known ? *known : real_->get().tableRecordCount(index);
    }
    std::shared_ptr<Recordset> OpenRecordset(const std::string& table) override {
        if (!facts_.record || !isSameName(facts_.record->table, table))
            return real_->get().OpenRecordset(table);
        return std::make_shared<RememberedRecordset>(
            *facts_.record, [real = real_, table] { return real->get().OpenRecordset(table); });
    }

private:
    struct Real {
        explicit Real(OpenAgain again) : openAgain(std::move(again)) {}
        Database& get() {
            if (!database)
                database = openAgain();
            return *database;
        }
        OpenAgain openAgain;
        std::shared_ptr<Database> database;
    };
    bool isThere(std::int16_t index) const { return index >= 0 && std::size_t(index) < facts_.tables.size(); }

    Facts facts_;
    std::shared_ptr<Real> real_;
};

// What a watched database and its recordsets have in common.
class Notes {
public:
    explicit Notes(KeepFacts keep) : keep_(std::move(keep)) {}
    ~Notes() {
        if (!isSpoilt)
            keep_(std::move(facts));
    }
    Notes(const Notes&) = delete;
    Notes& operator=(const Notes&) = delete;

    // Runs a question to the database itself.
    template<class Question>
    auto ask(Question&& question) {
        try {
            return std::forward<Question>(question)();
        } catch (...) {
            isSpoilt = true;
            throw;
        }
    }

    Facts facts;
    bool isSpoilt = false;

private:
    KeepFacts keep_;
};

// Of the first table that is opened; its facts are those of its first record.
class WatchedRecordset : public Recordset {
public:
    WatchedRecordset(
        std::shared_ptr<Notes> notes, std::shared_ptr<Recordset> recordset, const std::string& table)
        : notes_(std::move(notes)), recordset_(std::move(recordset)) {
        notes_->ask([&] {
            notes_->facts.record = {
                table, recordset_->RecordCount(), recordset_->BOF(), recordset_->EOF_(), {}};
        });
    }

    std::int32_t RecordCount() override { return recordset_->RecordCount(); }
    bool BOF() override { return recordset_->BOF(); }
    bool EOF_() override { return recordset_->EOF_(); }
    Value field(std::string_view name) override {
        if (hasMoved_)
            return recordset_->field(name);
        std::vector<FieldFacts>& fields = notes_->facts.record->fields;
        try {
            const Value value = recordset_->field(name);
            fields.push_back({std::string(name), value});
            return value;
        } catch (const Error& error) {
            if (error.number() == errors::ItemNotFound)
                fields.push_back({std::string(name), error.description()});
            else
                notes_->isSpoilt = true;
            throw;
        }
    }
    void MoveFirst() override { moved().MoveFirst(); }
    void MoveNext() override { moved().MoveNext(); }
    void Edit() override { moved().Edit(); }
    void AddNew() override { moved().AddNew(); }
    void Update() override { moved().Update(); }
    void setField(std::string_view name, const Value& value) override { moved().setField(name, value); }

private:
    Recordset& moved() {
        hasMoved_ = true;
        return *recordset_;
    }

    std::shared_ptr<Notes> notes_;
    std::shared_ptr<Recordset> recordset_;
    bool hasMoved_ = false;
};

class WatchedDatabase : public Database {
public:
    WatchedDatabase(std::shared_ptr<Database> database, bool mayHaveLog, KeepFacts keep)
        : database_(std::move(database)), notes_(std::make_shared<Notes>(std::move(keep))) {
        notes_->facts.mayHaveLog = mayHaveLog;
        notes_->ask([&] {
            for (std::int16_t index = 0; index < database_->tableCount(); ++index)
                notes_->facts.tables.push_back({database_->tableName(index), std::nullopt});
        });
    }

    std::int16_t tableCount() override { return database_->tableCount(); }
    std::string tableName(std::int16_t index) override { return database_->tableName(index); }
    std::int32_t tableRecordCount(std::int16_t index) override {
        return notes_->ask([&] {
            const std::int32_t count = database_->tableRecordCount(index);
            notes_->facts.tables.at(std::size_t(index)).recordCount = count;
            return count;
        });
    }
    std::shared_ptr<Recordset> OpenRecordset(const std::string& table) override {
        return notes_->ask([&]() -> std::shared_ptr<Recordset> {
            std::shared_ptr<Recordset> recordset = database_->OpenRecordset(table);
            if (notes_->facts.record)
                return recordset;
            return std::make_shared<WatchedRecordset>(notes_, std::move(recordset), table);
        });
    }

private:
    std::shared_ptr<Database> database_;
    std::shared_ptr<Notes> notes_;
};

} // namespace

std::shared_ptr<Database> makeRememberedDatabase(Facts facts, OpenAgain openAgain) {
    return std::make_shared<RememberedDatabase>(std::move(facts), std::move(openAgain));
}

std::shared_ptr<Database> makeWatchedDatabase(
    std::shared_ptr<Database> database, bool mayHaveLog, KeepFacts keep) {
    return std::make_shared<WatchedDatabase>(std::move(database), mayHaveLog, std::move(keep));
}

} // namespace genutil::memory
