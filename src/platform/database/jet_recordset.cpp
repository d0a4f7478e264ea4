#include "platform/database/jet_recordset.h"

#include "platform/database/jet_row.h"
#include "platform/database/same_name.h"

#include <algorithm>

namespace genutil::jet {

RecordsetOfTable::RecordsetOfTable(std::shared_ptr<File> file, std::uint32_t page)
    : file_(std::move(file)), table_(file_->readTable(page)) {
    file_->forEachRecord(table_, [this](std::string_view record) {
        bytes_ += record;
        ends_.push_back(bytes_.size());
    });
}

void RecordsetOfTable::refuseChange() const {
    throw Error(
        errors::ReadOnlyDatabase, "'" + file_->path() + "' is read only: Jet databases are not written");
}

void RecordsetOfTable::needRecord(bool isThere) const {
    if (!isThere)
        throw Error(errors::NoCurrentRecord);
}

void RecordsetOfTable::MoveFirst() {
    needRecord(!ends_.empty());
    current_ = 0;
}

void RecordsetOfTable::MoveNext() {
    needRecord(!EOF_());
    ++current_;
}

Value RecordsetOfTable::field(std::string_view name) {
    const auto column = std::find_if(table_.columns.begin(), table_.columns.end(),
        [name](const Column& each) { return isSameName(each.name, name); });
    if (column == table_.columns.end())
        throw Error(errors::ItemNotFound,
            "'" + file_->path() + "' has no field '" + std::string(name) + "' in the table that is read");
    needRecord(!EOF_());
    const std::size_t begin = current_ == 0 ? 0 : ends_[current_ - 1];
    const std::string_view record = std::string_view(bytes_).substr(begin, ends_[current_] - begin);
    return checked(*file_, [&] { return fieldOf(*file_, table_, *column, record); });
}

} // namespace genutil::jet
