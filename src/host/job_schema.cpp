#include "host/job_schema.h"

#include "host/commands.h"
#include "host/ls_option_set.h"
#include "hostif/error.h"

#include <QDate>
#include <QLocale>

namespace kestal {
namespace {

using enum genutil::ColumnType;
using genutil::NewColumn;
using genutil::Value;

// A column of the details, with what a new job has there.
struct DetailsColumn {
    NewColumn column;
    Value initial; // Null: not known yet
};

const std::vector<DetailsColumn>& detailsColumns() {
    constexpr std::int32_t usualDecimals = 3;
    constexpr std::int32_t plane = 0;
    static const std::vector<DetailsColumn> columns{
        {{"Description", Text}, ""},
        {{"Surveyor", Text}, ""},
        {{"Date", Text}, ""},
        {{"Reference", Text}, ""},
        {{"OutputDecH", Integer}, usualDecimals},
        {{"OutputDecV", Integer}, usualDecimals},
        {{"CoordType", Integer}, plane},
        {{"Projection", Text}, ""},
        {{"Zone", Integer}, 0},
        {{"NValue", Real}, 0.0},
        {{"DatumV", Text}, ""},
        {{"EarthRadius", Real}, {}},
        {{"ApplyGeoid", Boolean}, false},
        {{"InterpMethod", Text}, ""},
        {{"GridFile", Text}, ""},
        {{"Spheroid", Text}, ""},
        {{"DatumH", Text}, ""},
        {{"DeflectionNS", Real}, 0.0},
        {{"DeflectionEW", Real}, 0.0},
        {{"ApproxLat", Integer}, {}},
        {{"ValidHorizPts", Integer}, 0},
        {{"CurrentMaxPoint", Integer}, 0},
        {{"FirstFreePoint", Integer}, 1},
        {{"FirstPointStored", Integer}, 0},
        {{"TransType", Text}, ""},
        {{"GeoidUpdate", Boolean}, false},
        {{"MinimumX", Real}, 0.0},
        {{"MinimumY", Real}, 0.0},
        {{"MaximumX", Real}, 0.0},
        {{"MaximumY", Real}, 0.0},
        {{"CreateVersion", Text}, versionText},
    };
    return columns;
}

genutil::ColumnType columnType(VARTYPE type) {
    switch (type) {
    case VT_BOOL:
        return Boolean;
    case VT_BSTR:
        return Text;
    case VT_I2:
    case VT_I4:
        return Integer;
    default:
        return Real;
    }
}

// One column for each least-squares option, and the page that a record belongs to.
genutil::NewTable headerTable() {
    genutil::NewTable header{job_tables::DataHeader, {{job_tables::PageField, Integer}}, {}};
    for (const LsOption& option : lsOptions())
        header.columns.push_back({option.name, columnType(option.initial.vt)});
    return header;
}

} // namespace

std::string interpolation::currentName(const std::string& stored) {
    for (const Method& method : {A, B, C})
        if (stored == method.legacyCode)
            return method.name;
    return stored == "x" ? "" : stored;
}

std::vector<genutil::NewTable> emptyJobTables(const std::string& date) {
    genutil::NewTable details{job_tables::Details, {}, {{}}};
    for (const auto& [column, initial] : detailsColumns()) {
        details.columns.push_back(column);
        details.records[0].emplace_back(column.name, column.name == "Date" ? Value(date) : initial);
    }
    return {details, {job_tables::AlphaIds, {{"PointNo", Integer}, {"AlphaId", Text}}, {}},
        {job_tables::Points, {{"PointNo", Integer}, {"X", Real}, {"Y", Real}, {"Code", Text}}, {}},
        {job_tables::Heights, {{"PointNo", Integer}, {"Height", Real}}, {}}, headerTable()};
}

void createJob(const std::string& path) {
    if (const QString name = QString::fromStdString(path);
        !name.endsWith(".gdb", Qt::CaseInsensitive) && !name.endsWith(".mdb", Qt::CaseInsensitive))
        throw genutil::Error(
            genutil::errors::BadFileName, "A job's file name must end in .gdb or .mdb, not '" + path + "'");
    // English names of months, whatever the user's language: jobs travel.
    const QString today = QLocale::c().toString(QDate::currentDate(), "dd-MMM-yyyy");
    genutil::createSqliteDatabase(path, emptyJobTables(today.toStdString()));
}

} // namespace kestal
