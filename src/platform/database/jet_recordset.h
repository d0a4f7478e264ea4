#pragma once

#include "hostif/database.h"
#include "platform/database/jet_file.h"

#include <memory>
#include <string>
#include <vector>

namespace genutil::jet {

// The records of one table as they were when it was opened; long texts are fetched when they are asked for.
class RecordsetOfTable : public Recordset {
public:
    // Throws Damage.
    RecordsetOfTable(std::shared_ptr<File> file, std::uint32_t page);

    std::int32_t RecordCount() override { return static_cast<std::int32_t>(ends_.size()); }
    bool BOF() override { return ends_.empty(); }
    bool EOF_() override { return current_ >= ends_.size(); }
    void MoveFirst() override;
    void MoveNext() override;
    void Edit() override { refuseChange(); }
    void AddNew() override { refuseChange(); }
    void Update() override { refuseChange(); }
    Value field(std::string_view name) override;
    void setField(std::string_view, const Value&) override { refuseChange(); }

private:
    [[noreturn]] void refuseChange() const;
    void needRecord(bool isThere) const;

    std::shared_ptr<File> file_;
    Table table_;
    std::string bytes_; // of all records
    std::vector<std::size_t> ends_;
    std::size_t current_ = 0;
};

} // namespace genutil::jet
