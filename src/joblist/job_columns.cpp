#include "joblist/job_columns.h"

#include "hostif/program.h"
#include "joblist/job_errors.h"
#include "text/blanks.h"

#include <numeric>

namespace genutil {
namespace {

using enum ColumnAlignment;
using enum ColumnContent;
using enum ColumnFill;
using enum ColumnUse;

constexpr std::int16_t geographic = 2;

template<const auto& property>
std::string details(const JobSummary& job) {
    return required(job.jobDetails, "jobDetails").get(property);
}

template<const auto& property>
std::string configuration(const JobSummary& job) {
    return Value(required(job.jobCfg, "jobCfg").get(property)).toTextOrEmpty();
}

template<const auto& property>
std::string general(const JobSummary& job) {
    return Value(required(job.jobGeneral, "jobGeneral").get(property)).toTextOrEmpty();
}

template<auto count>
std::string counted(const JobSummary& job) {
    return std::to_string(job.counts.*count);
}

// The middle of two edges of the job: an angle in geographic jobs, whole units in all others. The middle of
// two numbers near a double's limit is one, too.
std::string middle(const JobSummary& job, const Property<double>& least, const Property<double>& most,
    const char* angleKind) {
    const Record& extent = required(job.jobGeneral, "jobGeneral");
    const Value centre(std::midpoint(extent.get(least), extent.get(most)));
    StringUtilities& strUtil = job.component.strUtil();
    if (angleKind)
        return strUtil.AngleText(centre.toText(), 0, angleKind, 0);
    return text::trimBlanks(strUtil.FormatValue(centre, "#######0", ""));
}

bool isGeographic(const JobSummary& job) {
    return required(job.jobCfg, "jobCfg").get(jobcfg::CoordType) == geographic;
}

std::string eastingOrLatitude(const JobSummary& job) {
    return isGeographic(job) ? middle(job, jobgeneral::MinimumY, jobgeneral::MaximumY, "LATITUDE")
                             : middle(job, jobgeneral::MinimumX, jobgeneral::MaximumX, nullptr);
}

std::string northingOrLongitude(const JobSummary& job) {
    return isGeographic(job) ? middle(job, jobgeneral::MinimumX, jobgeneral::MaximumX, "LONGITUDE")
                             : middle(job, jobgeneral::MinimumY, jobgeneral::MaximumY, nullptr);
}

// The host's current job may be one without a record of details.
std::string version(const JobSummary& job) {
    Recordset& details = required(job.detailsRset, "the job details recordset");
    return details.EOF_() ? std::string() : details.field("CreateVersion").toTextOrEmpty();
}

constexpr std::array<JobColumn, jobColumnCount> columns{{
    {"Job", Left, Text, Main, [](const JobSummary& job) { return job.file; }, 0, EveryJob},
    {"Create Date", Centre, Text, Main, details<jobdetails::Date>, 0, EveryJob},
    {"Surveyor", Left, Text, Main, details<jobdetails::Surveyor>, 0, EveryJob},
    {"Reference", Left, Text, Main, details<jobdetails::Reference>, 0, EveryJob},
    {"Description", Left, Text, Main, details<jobdetails::Description>, 0, EveryJob},
    {"Coord System", Centre, Text, Main, configuration<jobcfg::CoordType>},
    {"E.Radius", Right, Number, Further, configuration<jobcfg::EarthRadius>, 8},
    {"Projection", Left, Text, Main, configuration<jobcfg::Projection>},
    {"H.Datum", Left, Text, Main, configuration<jobcfg::DatumH>, 10},
    {"Spheroid", Left, Text, Further, configuration<jobcfg::Spheroid>, 10},
    {"Approx.Lat", Centre, Number, Further, configuration<jobcfg::ApproxLat>, 4},
    {"Zone", Centre, Number, Main, configuration<jobcfg::Zone>, 4},
    {"V.Datum", Left, Text, Further, configuration<jobcfg::DatumV>, 10},
    {"G.Sep(N)", Right, Number, Further, configuration<jobcfg::NValue>, 6},
    {"V.Def-NS", Right, Number, Further, configuration<jobcfg::DeflectionNS>, 6},
    {"V.Def-EW", Right, Number, Further, configuration<jobcfg::DeflectionEW>, 6},
    {"Interp.Method", Left, Text, Further, configuration<jobcfg::InterpMethod>},
    {"Geoid File", Left, Text, Further, configuration<jobcfg::GridFile>},
    {"Dec. H", Centre, Number, Further, configuration<jobcfg::OutputDecH>, 2},
    {"Dec. V", Centre, Number, Further, configuration<jobcfg::OutputDecV>, 2},
    {"Points", Centre, Number, Main, general<jobgeneral::ValidHorizPts>, 8},
    {"Alpha IDs", Centre, Number, Further, counted<&CatalogueCounts::alphaIds>, 0, EveryJob},
    {"Cent. E/Lat", Right, Number, Further, eastingOrLatitude},
    {"Cent. N/Long", Right, Number, Further, northingOrLongitude},
    {"Trav Sets", Centre, Number, Further, counted<&CatalogueCounts::traverseSets>, 0, EveryJob},
    {"LS Sets", Centre, Number, Further, counted<&CatalogueCounts::leastSquaresSets>, 0, EveryJob},
    {"Version", Left, Text, Further, version},
}};

} // namespace

std::span<const JobColumn, jobColumnCount> jobColumns() {
    return columns;
}

std::string jobColumnsFormat() {
    std::string format;
    for (const JobColumn& column : columns) {
        format += format.empty() ? "" : "|";
        format += static_cast<char>(column.alignment);
        format += column.title;
    }
    return format;
}

} // namespace genutil
