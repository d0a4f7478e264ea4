#include "platform/database/jet_database.h"

#include "platform/database/jet_recordset.h"
#include "platform/database/jet_row.h"
#include "platform/database/same_name.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace genutil {
namespace {

struct CatalogueEntry {
    std::string name;
    std::uint32_t page;
};

const jet::Column& columnOf(const jet::Table& table, std::string_view name) {
    for (const jet::Column& column : table.columns)
        if (isSameName(column.name, name))
            return column;
    throw jet::Damage{"its catalogue has no field '" + std::string(name) + "'"};
}

// The catalogue is a table itself, on the third page; the number of an object that is a table is its page.
std::vector<CatalogueEntry> readCatalogue(jet::File& file) {
    constexpr std::uint32_t cataloguePage = 2;
    constexpr std::int16_t tableType = 1;
    constexpr std::uint32_t systemFlags = 0x8000'0002;
    const jet::Table table = file.readTable(cataloguePage);
    const jet::Column& id = columnOf(table, "Id");
    const jet::Column& type = columnOf(table, "Type");
    const jet::Column& name = columnOf(table, "Name");
    const jet::Column& flags = columnOf(table, "Flags");
    std::vector<CatalogueEntry> found;
    file.forEachRecord(table, [&](std::string_view record) {
        if (jet::fieldOf(file, table, type, record) != Value(tableType))
            return;
        const Value marks = jet::fieldOf(file, table, flags, record);
        if (!marks.isNull() && (static_cast<std::uint32_t>(marks.toInt32()) & systemFlags) != 0)
            return;
        const auto page = static_cast<std::uint32_t>(jet::fieldOf(file, table, id, record).toInt32());
        found.push_back({jet::fieldOf(file, table, name, record).toText(), page & 0xFF'FFFF});
    });
    if (found.size() > std::numeric_limits<std::int16_t>::max())
        throw jet::Damage{"it has " + std::to_string(found.size()) + " tables"};
    return found;
}

class JetDatabase : public Database {
public:
    explicit JetDatabase(DatabaseFile file) : file_(std::make_shared<jet::File>(std::move(file))) {
        jet::checked(*file_, [this] {
            try {
                tables_ = readCatalogue(*file_);
            } catch (const Error& error) {
                throw jet::Damage{"in its catalogue: " + error.description()};
            }
        });
    }

    std::int16_t tableCount() override { return static_cast<std::int16_t>(tables_.size()); }
    std::string tableName(std::int16_t index) override { return entry(index).name; }
    std::int32_t tableRecordCount(std::int16_t index) override {
        return jet::checked(*file_, [&] { return file_->recordCount(entry(index).page); });
    }
    std::shared_ptr<Recordset> OpenRecordset(const std::string& table) override {
        for (const CatalogueEntry& each : tables_)
            if (isSameName(each.name, table))
                return jet::checked(
                    *file_, [&] { return std::make_shared<jet::RecordsetOfTable>(file_, each.page); });
        throw Error(errors::TableNotFound, "'" + file_->path() + "' has no table '" + table + "'");
    }

private:
    const CatalogueEntry& entry(std::int16_t index) const {
        if (index < 0 || static_cast<std::size_t>(index) >= tables_.size())
            throw Error(errors::ItemNotFound, "'" + file_->path() + "' has no table number " +
                                                  std::to_string(index) + ": it has " +
                                                  std::to_string(tables_.size()));
        return tables_[static_cast<std::size_t>(index)];
    }

    std::shared_ptr<jet::File> file_;
    std::vector<CatalogueEntry> tables_;
};

} // namespace

std::shared_ptr<Database> openJetDatabase(DatabaseFile file) {
    return std::make_shared<JetDatabase>(std::move(file));
}

} // namespace genutil
