#include "platform/database/sqlite_recordset.h"

#include "hostif/error.h"
#include "platform/database/same_name.h"

#include <algorithm>

namespace genutil::sqlite {
namespace {

// By the rules of the database for the declared types of columns: those of texts and those without a type
// keep what they are given.
bool isNumberType(std::string type) {
    std::ranges::transform(
        type, type.begin(), [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    const auto has = [&](const char* part) { return type.find(part) != type.npos; };
    return has("INT") || !(type.empty() || has("CHAR") || has("CLOB") || has("TEXT") || has("BLOB"));
}

// Beyond so many records what was read of them is forgotten, and a change by others not noticed.
constexpr std::size_t mostRemembered = 1'000;

constexpr std::size_t mostRecords = 4'000'000; // whose numbers take 32 MB

} // namespace

RecordsetOfTable::RecordsetOfTable(
    std::shared_ptr<Connection> connection, const std::string& table, bool isPlain)
    : connection_(std::move(connection)), table_(quoted(table)) {
    if (!isPlain || !preparePlainly()) {
        readFields();
        prepareRecord();
    }
    rows_ = rowsOfTable();
}

// In a third of the time, which counts in a list of thousands of jobs. False for a table without row numbers,
// or with fields of that name.
bool RecordsetOfTable::preparePlainly() {
    try {
        rowOfNumber_.emplace(*connection_, "SELECT * FROM " + table_ + " WHERE rowid = ?");
    } catch (const Error&) {
        return false; // what is wrong is found again
    }
    for (int i = 0; i < rowOfNumber_->columnCount(); ++i) {
        const std::string type = rowOfNumber_->declaredType(i);
        fields_.push_back({.name = rowOfNumber_->columnName(i),
            .isNumeric = isNumberType(type),
            .isBoolean = isSameName(type, "BOOLEAN")});
    }
    rowNumber_ = "rowid";
    const bool hasNumbers =
        std::ranges::none_of(fields_, [](const Field& field) { return isSameName(field.name, "rowid"); });
    if (!hasNumbers)
        fields_.clear(), rowNumber_.clear();
    return hasNumbers;
}

void RecordsetOfTable::prepareRecord() {
    std::string selection;
    for (std::size_t i = 0; i < fields_.size(); ++i)
        selection += (i ? ", " : "") + (fields_[i].isAlone ? "NULL" : selectionOf(i));
    rowOfNumber_.emplace(*connection_, "SELECT " + selection + " FROM " + table_ + whereRow());
}

void RecordsetOfTable::readFields() {
    constexpr int nameColumn = 1, typeColumn = 2, hiddenColumn = 6;
    constexpr int isComputed = 2;
    Statement columns(*connection_, "PRAGMA table_xinfo(" + table_ + ")");
    while (columns.next()) {
        const std::string type = columns.value(typeColumn)->toText();
        fields_.push_back({.name = columns.value(nameColumn)->toText(),
            .isNumeric = isNumberType(type),
            .isBoolean = isSameName(type, "BOOLEAN"),
            .isAlone = columns.number(hiddenColumn) == isComputed});
    }
    if (fields_.empty())
        throw Error(errors::UnrecognisedDatabase,
            "The table " + table_ + " in '" + connection_->path() + "' has no fields that can be read");
    for (const char* name : {"rowid", "_rowid_", "oid"})
        if (rowNumber_.empty() &&
            std::ranges::none_of(fields_, [&](const Field& field) { return isSameName(field.name, name); }))
            rowNumber_ = name;
    try {
        Statement(*connection_, "SELECT " + rowNumber_ + " FROM " + table_);
    } catch (const Error&) {
        rowNumber_.clear(); // made without
    }
}

// A binary is not read: an empty one stands for it.
std::string RecordsetOfTable::selectionOf(std::size_t field) const {
    const std::string name = quoted(fields_[field].name);
    return "CASE typeof(" + name + ") WHEN 'blob' THEN zeroblob(0) ELSE " + name + " END";
}

std::string RecordsetOfTable::whereRow() const {
    return rowNumber_.empty() ? " LIMIT 1 OFFSET ?" : " WHERE " + rowNumber_ + " = ?";
}

std::vector<std::int64_t> RecordsetOfTable::rowsOfTable() {
    std::vector<std::int64_t> numbers;
    Statement rows(*connection_,
        rowNumber_.empty() ? "SELECT NULL FROM " + table_
                           : "SELECT " + rowNumber_ + " FROM " + table_ + " ORDER BY " + rowNumber_);
    while (rows.next()) {
        if (numbers.size() == mostRecords)
            throw Error(errors::UnrecognisedDatabase, "The table " + table_ + " in '" + connection_->path() +
                                                          "' has more than " + std::to_string(mostRecords) +
                                                          " records");
        numbers.push_back(rowNumber_.empty() ? std::int64_t(numbers.size()) : rows.number(0));
    }
    return numbers;
}

void RecordsetOfTable::needRecord(bool isThere) const {
    if (!isThere)
        throw Error(errors::NoCurrentRecord);
}

void RecordsetOfTable::goTo(std::size_t record) {
    change_ = Change::None;
    current_ = record;
    record_.clear();
}

void RecordsetOfTable::MoveFirst() {
    needRecord(!rows_.empty());
    goTo(0);
}

void RecordsetOfTable::MoveNext() {
    needRecord(!EOF_());
    goTo(current_ + 1);
}

void RecordsetOfTable::begin(Change change) {
    if (connection_->isReadOnly())
        throw Error(errors::ReadOnlyDatabase, "'" + connection_->path() + "' was opened read only");
    if (rowNumber_.empty())
        throw Error(errors::ReadOnlyDatabase,
            "The table " + table_ + " in '" + connection_->path() + "' has no row numbers, and is read only");
    change_ = change;
    changed_.clear();
}

void RecordsetOfTable::Edit() {
    needRecord(!EOF_());
    begin(Change::Edit);
}

void RecordsetOfTable::AddNew() {
    begin(Change::Add);
}

void RecordsetOfTable::needChange() const {
    if (connection_->isReadOnly())
        throw Error(errors::ReadOnlyDatabase, "'" + connection_->path() + "' was opened read only");
    if (change_ == Change::None)
        throw Error(errors::InvalidCall, "A record is changed between Edit or AddNew and Update only");
}

std::size_t RecordsetOfTable::fieldIndex(std::string_view name) const {
    for (std::size_t i = 0; i < fields_.size(); ++i)
        if (isSameName(fields_[i].name, name))
            return i;
    throw Error(errors::ItemNotFound,
        "'" + connection_->path() + "' has no field '" + std::string(name) + "' in the table " + table_);
}

Value RecordsetOfTable::field(std::string_view name) {
    const std::size_t index = fieldIndex(name);
    if (change_ != Change::None) {
        const auto found = changed_.find(index);
        if (found != changed_.end())
            return found->second;
        if (change_ == Change::Add)
            return Null();
    }
    if (const std::optional<Value> value = valueOf(index)) {
        // A writer goes by what was given before the writing began.
        if (!connection_->isReadOnly() && change_ == Change::None) {
            if (given_.size() >= mostRemembered)
                given_.clear();
            given_[rows_[current_]].insert_or_assign(index, *value);
        }
        return *value;
    }
    throw Error(errors::TypeMismatch, "The field '" + fields_[index].name + "' of '" + connection_->path() +
                                          "' holds neither a number nor a text");
}

// Nothing in the place of a binary.
const std::vector<std::optional<Value>>& RecordsetOfTable::currentRecord() {
    needRecord(!EOF_());
    if (record_.empty()) {
        rowOfNumber_->reset();
        rowOfNumber_->bind(0, rows_[current_]);
        bool isThere = false;
        try {
            isThere = rowOfNumber_->next();
        } catch (const Error& error) {
            if (error.number() != errors::UnrecognisedDatabase ||
                std::ranges::all_of(fields_, &Field::isAlone))
                throw;
            // A field that cannot be read does not take the others along.
            for (Field& field : fields_)
                field.isAlone = true;
            prepareRecord();
            return currentRecord();
        }
        if (!isThere) {
            const std::string name = recordName();
            rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(current_));
            goTo(rows_.size());
            throw Error(errors::RecordDeleted, name + " has been deleted by another program");
        }
        std::vector<std::optional<Value>> record;
        for (std::size_t i = 0; i < fields_.size(); ++i)
            record.push_back(rowOfNumber_->value(int(i), fields_[i].isBoolean));
        rowOfNumber_->reset(); // lets others write
        record_ = std::move(record);
    }
    return record_;
}

void RecordsetOfTable::setField(std::string_view name, const Value& value) {
    needChange();
    changed_[fieldIndex(name)] = value;
}

std::string RecordsetOfTable::changeSql() const {
    if (change_ == Change::Add && changed_.empty())
        return "INSERT INTO " + table_ + " DEFAULT VALUES";
    std::string names;
    std::string marks;
    for (const auto& [index, value] : changed_) {
        const char* const separator = names.empty() ? "" : ", ";
        names += separator + quoted(fields_[index].name) + (change_ == Change::Edit ? " = ?" : "");
        marks += std::string(separator) + "?";
    }
    if (change_ == Change::Add)
        return "INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")";
    return "UPDATE " + table_ + " SET " + names + whereRow();
}

// What the database itself would not make a number of.
Value RecordsetOfTable::stored(std::size_t field, const Value& value) {
    const std::string& point = numberLocale().decimalPoint;
    if (!value.isText() || point == ".")
        return value;
    const std::string text = value.toText();
    if (text.find(point) == text.npos || !fields_[field].isNumeric)
        return value;
    try {
        return value.toDouble();
    } catch (const Error&) {
        return value;
    }
}

std::optional<Value> RecordsetOfTable::valueOf(std::size_t field) {
    currentRecord();
    if (!fields_[field].isAlone)
        return record_[field];
    Statement one(*connection_, "SELECT " + selectionOf(field) + " FROM " + table_ + whereRow());
    one.bind(0, rows_[current_]);
    return one.next() ? one.value(0, fields_[field].isBoolean) : Null();
}

// Called within a transaction, so that nothing changes between the look and the writing.
void RecordsetOfTable::refuseUnseenChanges() {
    const std::int64_t row = rows_[current_];
    record_.clear();
    currentRecord(); // that it is still there
    for (auto& [index, given] : given_[row]) {
        const auto now = valueOf(index);
        if (!now || *now == given || !changed_.contains(index) || changed_.at(index) == *now)
            continue;
        const auto shown = [](const Value& value) {
            return value.isNull() ? "empty" : "'" + value.toText() + "'";
        };
        const std::string text = "The field " + fields_[index].name + " of " + recordName() + " was " +
                                 shown(given) + " when it was read, and another program has made it " +
                                 shown(*now) + "; saving again writes over that";
        given_.erase(row);
        throw Error(errors::RecordChanged, text);
    }
}

// Records that were added here are among rows_ already. In a table of many records one more hides nothing.
void RecordsetOfTable::refuseUnseenRecords() {
    if (rows_.size() >= mostRemembered)
        return;
    std::vector<std::int64_t> now = rowsOfTable();
    const bool isSeen =
        std::ranges::all_of(now, [&](std::int64_t row) { return std::ranges::count(rows_, row) > 0; });
    if (isSeen)
        return;
    rows_ = std::move(now);
    goTo(rows_.size());
    throw Error(errors::RecordChanged, "Another program has added a record to the table " + table_ + " of '" +
                                           connection_->path() +
                                           "' meanwhile; saving again takes it into account");
}

std::string RecordsetOfTable::recordName() const {
    return "record " + std::to_string(current_ + 1) + " of the table " + table_ + " in '" +
           connection_->path() + "'";
}

void RecordsetOfTable::Update() {
    needChange();
    if (change_ == Change::Add || !changed_.empty()) {
        Transaction transaction(*connection_);
        change_ == Change::Edit ? refuseUnseenChanges() : refuseUnseenRecords();
        Statement statement(*connection_, changeSql());
        int parameter = 0;
        for (const auto& [index, value] : changed_)
            statement.bind(parameter++, stored(index, value));
        if (change_ == Change::Edit)
            statement.bind(parameter, rows_[current_]);
        statement.next();
        transaction.commit();
        if (change_ == Change::Edit)
            for (const auto& change : changed_)
                given_[rows_[current_]].erase(
                    change.first); // what the database has made of it is not known yet
        else
            rows_.push_back(connection_->lastRow());
    }
    goTo(current_);
}

} // namespace genutil::sqlite
