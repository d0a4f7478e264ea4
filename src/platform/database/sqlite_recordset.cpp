#include "platform/database/sqlite_recordset.h"

#include "hostif/error.h"
#include "platform/database/same_name.h"

#include <algorithm>

namespace genutil::sqlite {
namespace {

// By the rules of the database for the declared types of columns.
bool isNumberType(std::string type) {
    std::ranges::transform(
        type, type.begin(), [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    const auto has = [&](const char* part) { return type.find(part) != type.npos; };
    return has("INT") || !(type.empty() || has("CHAR") || has("CLOB") || has("TEXT") || has("BLOB"));
}

// Beyond so many records what was read of them is forgotten, and a change by others not noticed.
constexpr std::size_t mostRemembered = 1'000;

} // namespace

RecordsetOfTable::RecordsetOfTable(std::shared_ptr<Connection> connection, const std::string& table)
    : connection_(std::move(connection)), table_(quoted(table)),
      rowOfNumber_(*connection_, "SELECT * FROM " + table_ + " WHERE rowid = ?") {
    for (int i = 0; i < rowOfNumber_.columnCount(); ++i)
        fields_.push_back(rowOfNumber_.columnName(i));
    rows_ = rowsOfTable();
}

std::vector<std::int64_t> RecordsetOfTable::rowsOfTable() {
    std::vector<std::int64_t> numbers;
    Statement rows(*connection_, "SELECT rowid FROM " + table_ + " ORDER BY rowid");
    while (rows.next())
        numbers.push_back(rows.number(0));
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
        if (isSameName(fields_[i], name))
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
    if (const auto& value = currentRecord()[index]) {
        // A writer goes by what was given before the writing began.
        if (!connection_->isReadOnly() && change_ == Change::None) {
            if (given_.size() >= mostRemembered)
                given_.clear();
            given_[rows_[current_]].insert_or_assign(index, *value);
        }
        return *value;
    }
    throw Error(errors::TypeMismatch, "The field '" + fields_[index] + "' of '" + connection_->path() +
                                          "' holds neither a number nor a text");
}

// Nothing in the place of a binary.
const std::vector<std::optional<Value>>& RecordsetOfTable::currentRecord() {
    needRecord(!EOF_());
    if (record_.empty()) {
        rowOfNumber_.reset();
        rowOfNumber_.bind(0, rows_[current_]);
        if (!rowOfNumber_.next()) {
            const std::string name = recordName();
            rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(current_));
            goTo(rows_.size());
            throw Error(errors::RecordDeleted, name + " has been deleted by another program");
        }
        std::vector<std::optional<Value>> record;
        for (int i = 0; i < rowOfNumber_.columnCount(); ++i)
            record.push_back(rowOfNumber_.value(i));
        rowOfNumber_.reset(); // lets others write
        if (record.size() != fields_.size())
            throw Error(errors::UnrecognisedDatabase,
                "The fields of the table " + table_ + " in '" + connection_->path() + "' have been changed");
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
        names += separator + quoted(fields_[index]) + (change_ == Change::Edit ? " = ?" : "");
        marks += std::string(separator) + "?";
    }
    if (change_ == Change::Add)
        return "INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")";
    return "UPDATE " + table_ + " SET " + names + " WHERE rowid = ?";
}

// What the database itself would not make a number of.
Value RecordsetOfTable::stored(std::size_t field, const Value& value) {
    const std::string& point = numberLocale().decimalPoint;
    if (!value.isText() || point == ".")
        return value;
    const std::string text = value.toText();
    if (text.find(point) == text.npos || !isNumeric(field))
        return value;
    try {
        return value.toDouble();
    } catch (const Error&) {
        return value;
    }
}

// Columns of texts and those without a type, which keep what they are given, are not numeric.
bool RecordsetOfTable::isNumeric(std::size_t field) {
    if (numeric_.empty()) {
        numeric_.resize(fields_.size());
        Statement columns(*connection_, "PRAGMA table_xinfo(" + table_ + ")");
        while (columns.next()) {
            const std::string name = columns.value(1)->toText();
            const std::string type = columns.value(2)->toText();
            for (std::size_t i = 0; i < fields_.size(); ++i)
                if (isSameName(fields_[i], name))
                    numeric_[i] = isNumberType(type);
        }
    }
    return numeric_[field];
}

// Called within a transaction, so that nothing changes between the look and the writing.
void RecordsetOfTable::refuseUnseenChanges() {
    const std::int64_t row = rows_[current_];
    record_.clear();
    currentRecord();
    for (auto& [index, given] : given_[row]) {
        const auto& now = record_[index];
        if (!now || *now == given || !changed_.contains(index) || changed_.at(index) == *now)
            continue;
        const auto shown = [](const Value& value) {
            return value.isNull() ? "empty" : "'" + value.toText() + "'";
        };
        const std::string text = "The field " + fields_[index] + " of " + recordName() + " was " +
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
