#pragma once

#include "hostif/database.h"
#include "platform/database/sqlite_connection.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace genutil::sqlite {

// The records that the table had when it was opened, in stored order, and those added since at the end. Each
// is read when it becomes the current one. Changes are kept until Update writes them; moving gives them up.
// A text that is a number in the notation of the user's locale becomes that number in a column of numbers, as
// one with a decimal point does whatever the locale; any other text stays one.
// What another program has done since the reading is not written over unseen. Update throws RecordChanged,
// naming the field and both values, where a field that it writes does not hold what field() gave last, and
// where the table has gained records before one is added; RecordDeleted where the record has gone. The next
// Update of the record, or the next record, then counts with what is there now. Edit, AddNew and Update throw
// ReadOnlyDatabase where the database was opened so; setField and Update without Edit or AddNew before throw
// InvalidCall.
class RecordsetOfTable : public Recordset {
public:
    // `isPlain`: no field of the table is computed by the file's own rules, and none can be large.
    RecordsetOfTable(std::shared_ptr<Connection> connection, const std::string& table, bool isPlain);

    std::int32_t RecordCount() override { return static_cast<std::int32_t>(rows_.size()); }
    bool BOF() override { return rows_.empty(); }
    bool EOF_() override { return current_ >= rows_.size(); }
    void MoveFirst() override;
    void MoveNext() override;
    void Edit() override;
    void AddNew() override;
    void Update() override;
    Value field(std::string_view name) override;
    void setField(std::string_view name, const Value& value) override;

private:
    enum class Change { None, Edit, Add };

    void needRecord(bool isThere) const;
    void needChange() const;
    void begin(Change change);
    void goTo(std::size_t record);
    const std::vector<std::optional<Value>>& currentRecord();
    std::size_t fieldIndex(std::string_view name) const;
    bool preparePlainly();
    void readFields();
    std::string whereRow() const;
    std::string selectionOf(std::size_t field) const;
    // Of the current record.
    std::optional<Value> valueOf(std::size_t field);
    void prepareRecord();
    std::string changeSql() const;
    std::vector<std::int64_t> rowsOfTable();
    std::string recordName() const;
    void refuseUnseenChanges();
    void refuseUnseenRecords();
    Value stored(std::size_t field, const Value& value);

    struct Field {
        std::string name;
        bool isNumeric = false;
        bool isBoolean = false;
        bool isAlone = false; // not read before it is asked for
    };
    std::shared_ptr<Connection> connection_;
    std::string table_; // quoted
    std::vector<Field> fields_;
    std::string
        rowNumber_; // the name of it that no field has; "" for a table without, whose records are counted
    std::optional<Statement> rowOfNumber_;
    std::vector<std::int64_t> rows_; // their numbers in the table
    std::size_t current_ = 0;
    std::vector<std::optional<Value>> record_;                   // the current one; no values: not read yet
    std::map<std::int64_t, std::map<std::size_t, Value>> given_; // by row and field, what field() gave last
    Change change_ = Change::None;
    std::map<std::size_t, Value> changed_; // by field
};

} // namespace genutil::sqlite
