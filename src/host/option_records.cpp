#include "host/option_records.h"

#include "host/job_schema.h"
#include "hostif/error.h"

#include <utility>

namespace kestal {
namespace {

using genutil::Recordset;

class FilteredRecords : public Recordset {
public:
    FilteredRecords(std::shared_ptr<Recordset> table, OptionRecords kind)
        : table_(std::move(table)), kind_(kind) {
        skip();
    }

    // Walks over the table and back: there are few records of options.
    std::int32_t RecordCount() override {
        const std::int32_t place = place_;
        std::int32_t count = 0;
        for (goToFirst(); !EOF_(); MoveNext())
            ++count;
        for (toStart(); place_ < place;)
            toNext();
        return count;
    }
    bool BOF() override { return RecordCount() == 0; }
    bool EOF_() override { return table_->EOF_(); }
    void MoveFirst() override {
        goToFirst();
        if (EOF_())
            throw genutil::Error(genutil::errors::NoCurrentRecord);
    }
    void MoveNext() override {
        toNext();
        skip();
    }
    void Edit() override { table_->Edit(); }
    void AddNew() override { table_->AddNew(); }
    void Update() override { table_->Update(); }
    genutil::Value field(std::string_view name) override { return table_->field(name); }
    void setField(std::string_view name, const genutil::Value& value) override {
        table_->setField(name, value);
    }

private:
    void goToFirst() {
        toStart();
        skip();
    }
    void toStart() {
        if (!table_->BOF())
            table_->MoveFirst();
        place_ = 0;
    }
    void toNext() {
        table_->MoveNext();
        ++place_;
    }
    void skip() {
        while (!table_->EOF_() && !isWanted())
            toNext();
    }
    bool isWanted() {
        genutil::Value page;
        try {
            page = table_->field(job_tables::PageField);
            if (!page.isNull())
                page.toDouble();
        } catch (const genutil::Error& error) {
            if (error.number() == genutil::errors::TypeMismatch ||
                error.number() == genutil::errors::Overflow)
                return false;
            if (error.number() != genutil::errors::ItemNotFound)
                throw;
            return kind_ == OptionRecords::OfJob; // a table of an earlier version has records of jobs only
        }
        return page.isNull() == (kind_ == OptionRecords::OfJob);
    }

    std::shared_ptr<Recordset> table_;
    OptionRecords kind_;
    std::int32_t place_ = 0; // of the current record in the table
};

} // namespace

std::shared_ptr<Recordset> optionRecords(std::shared_ptr<Recordset> table, OptionRecords kind) {
    return std::make_shared<FilteredRecords>(std::move(table), kind);
}

} // namespace kestal
