#pragma once

#include "lsoptions/ls_option_table.h"
#include "support/fake_files.h"
#include "support/fake_host.h"
#include "support/scripted_desktop.h"

#include <charconv>
#include <cmath>

namespace genutil::fake {

// Shows a number with as many digits as it needs, in the user's locale.
struct PlainStringUtilities : FakeStringUtilities {
    std::string FormatValue(const Value& value, const std::string&, const std::string&) override {
        return numberText(value.toDouble());
    }
};

struct PlainFormats : DisplayFormats {
    std::string ConstraintFactorFormat() override { return "factor"; }
    std::string ConvergenceFormat() override { return "convergence"; }
    std::string DistanceFormat() override { return "distance"; }
    std::string PPMFormat() override { return "ppm"; }
    std::string SecondsFormat() override { return "seconds"; }
    std::string ToleranceFormat() override { return "tolerance"; }
};

struct LSHost : FakeHost {
    std::unique_ptr<StringUtilities> createStringUtilities() override {
        return std::make_unique<PlainStringUtilities>();
    }
    std::unique_ptr<DisplayFormats> createDisplayFormats() override {
        return std::make_unique<PlainFormats>();
    }
};

// The host's table: every option is a field, and FileType.
struct LSTable : Recordset {
    using Row = std::map<std::string, Value, std::less<>>;
    std::vector<Row> rows;
    Row edited;
    std::size_t at = 0;
    bool adding = false;
    bool updateFails = false;

    Row& addRow() {
        Row& row = rows.emplace_back();
        for (const LSOption& option : lsOptions())
            row[std::string(option.name())] = Null();
        row["FileType"] = Null();
        return row;
    }
    std::int32_t RecordCount() override { return std::int32_t(rows.size()); }
    bool BOF() override { return rows.empty(); }
    bool EOF_() override { return at >= rows.size(); }
    void MoveFirst() override { at = 0; }
    void MoveNext() override { ++at; }
    void Edit() override {
        edited = rows.at(at);
        adding = false;
    }
    void AddNew() override {
        edited = LSTable().addRow();
        adding = true;
    }
    void Update() override {
        if (updateFails)
            throw Error(errors::ReadOnlyDatabase, "The database is read-only");
        (adding ? rows.emplace_back() : rows.at(at)) = edited;
    }
    Value field(std::string_view name) override { return of(rows.at(at), name); }
    void setField(std::string_view name, const Value& value) override { of(edited, name) = value; }

private:
    static Value& of(Row& row, std::string_view name) {
        const auto found = row.find(name);
        if (found == row.end())
            throw Error(errors::ItemNotFound, "no field " + std::string(name));
        return found->second;
    }
};

// An option set as a host has it by default.
inline RecordPtr optionSet() {
    const auto record = std::make_shared<FakeRecord>();
    for (const LSOption& option : lsOptions())
        std::visit(
            [&]<class T>(const Property<T>& property) {
                if constexpr (std::is_same_v<T, double>)
                    record->write(property.name, Value(0.005));
                else
                    record->write(property.name, Value(T()));
            },
            option.member);
    record->write("SDConstrFactor", Value(std::int32_t{1000}));
    record->write("Iterations", Value(std::int16_t{10}));
    record->write("Corrections", Value("1"));
    record->write("ConfLevelChiSquared", Value(950.0f));
    record->write("ConfLevelEllipses", Value(std::int32_t{950}));
    record->write("ConfLevelMDE", Value("9980"));
    record->write("ConfLevelOutliers", Value(990.0f));
    record->write("OutlierTest", Value(std::int16_t{2}));
    record->write("ScaleEE", Value(true));
    return record;
}

struct LSWorld {
    LSHost host;
    FakeFiles files;
    ScriptedDesktop desktop;
    Component component{desktop, files, host};
    RecordPtr prog = programObject();
    RecordPtr options = optionSet();
    RecordPtr defaults = optionSet();
    std::shared_ptr<LSTable> table = std::make_shared<LSTable>();
};

} // namespace genutil::fake
