#pragma once

#include "joblist/job_columns.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The job list as text, for files and for other programs.
namespace genutil {

enum class JobFormat {
    Table,        // columns of characters for reading; long texts are cut
    TabSeparated, // as spreadsheets read it: a text never becomes a formula, a number stays one
    CommaSeparated,
    Json // an array of objects; numbers are numbers, with a point
};

// The format of this name: "table", "tsv", "csv" or "json". InvalidCall, naming them, for another.
JobFormat jobFormatNamed(std::string_view name);

// Writes columns (from 1) of rows, with their titles, in UTF-8; lines end in LF. Texts are in full.
std::string writeJobs(
    JobFormat format, const std::vector<const JobRow*>& rows, const std::vector<std::int32_t>& columns);

// All columns, or the main ones.
std::vector<std::int32_t> jobColumnNumbers(bool all);
// The column of this title, case left aside. InvalidCall, naming the titles, for another.
std::int32_t jobColumnNamed(std::string_view title);

} // namespace genutil
