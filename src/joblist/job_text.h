#pragma once

#include "joblist/job_columns.h"
#include "joblist/job_file_facts.h"

#include <cstdint>
#include <optional>
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

enum class DateStyle {
    User, // "17-Nov-2026"
    Iso   // "2026-11-17"
};

// A job and, where they are wanted and it still is there, the facts of its file.
struct ListedJob {
    const JobRow* row = nullptr;
    std::optional<JobFileFacts> file;
};

// Writes columns (from 1) of jobs, with their titles, in UTF-8; lines end in LF. Texts are in full. In a
// table sizes and times of files are for reading; elsewhere they are bytes and UTC.
std::string writeJobs(JobFormat format, const std::vector<ListedJob>& jobs,
    const std::vector<std::int32_t>& columns, DateStyle dates = DateStyle::User);

// All columns, or the main ones; and those of the files.
std::vector<std::int32_t> jobColumnNumbers(bool all, bool ofFiles = false);
// The column of this title, those of the files included, case left aside. InvalidCall, naming the titles, for
// another.
std::int32_t jobColumnNamed(std::string_view title);

} // namespace genutil
