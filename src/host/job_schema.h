#pragma once

#include "platform/database/new_database.h"

#include <string>
#include <vector>

namespace kestal {

/// The names of what a job database holds.
namespace job_tables {
inline constexpr const char* Details = "JobDetails"; ///< one record that describes the job
inline constexpr const char* AlphaIds = "AlphaIds";  ///< names of points
inline constexpr const char* Points = "Points";
inline constexpr const char* Heights = "Heights";
inline constexpr const char* DataHeader = "DataHeader"; ///< least-squares options, of the job or of a page
inline constexpr const char* PageField =
    "FileType"; ///< of DataHeader: a page's number, Null in the job's record
inline constexpr const char* TraverseSetPrefix = "TravSet_"; ///< a table for each set of observations
inline constexpr const char* LSSetPrefix = "LSSet_";
} // namespace job_tables

/// Methods of interpolating in a geoid grid: today's name, and what early versions stored for it.
namespace interpolation {
struct Method {
    const char* name;
    const char* legacyCode;
};
inline constexpr Method A{"Bilinear", "L"};
inline constexpr Method B{"Bicubic", "C"};
inline constexpr Method C{"Biquadratic", "Q"};
/// The method's name of today for what a job has stored; "" for "x", which stands for none.
std::string currentName(const std::string& stored);
} // namespace interpolation

/// The tables of an empty job with its one details record, made on the given day ("23-Nov-2026").
std::vector<genutil::NewTable> emptyJobTables(const std::string& date);

/// Makes an empty job of today. Throws genutil::Error as genutil::createSqliteDatabase, and BadFileName for a
/// file name that no list of jobs would show: it must end in .gdb or .mdb.
void createJob(const std::string& path);

} // namespace kestal
