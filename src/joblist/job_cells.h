#pragma once

#include "joblist/job_columns.h"

#include <cstdint>
#include <string>

// What the list shows of a job's texts.
namespace genutil {

// Columns as they are counted here: from 1.
namespace jobcolumn {
inline constexpr std::int32_t Job = 1;
inline constexpr std::int32_t CreateDate = 2;
inline constexpr std::int32_t CoordSystem = 6;
} // namespace jobcolumn

// A creation date as it is shown, and the key that the list is ordered by: days since 30 December 1899.
struct ShownDate {
    std::string text;
    std::int32_t key = withoutDate;

    static constexpr std::int32_t withoutDate = -328716; // 1 January 1000: before every dated job
};

// Reads the date of a job, which may be led by a weekday and a comma. TypeMismatch, naming the text, for one
// that is no date.
ShownDate shownDate(const std::string& stored);

// The file name, without what follows the job's name unless extensions are shown.
std::string jobText(const std::string& file, bool showExt);

// The name of a stored type of coordinates; "" for an unknown one.
std::string coordSystemText(const std::string& stored);

// The first `limit` characters of the text without the blanks around it; all of them for 0.
std::string limitedText(const std::string& text, std::int32_t limit);

// The text of a column in full, as it is written outside of the list: a date that cannot be read stays as it
// is stored.
std::string fullText(const JobRow& job, std::int32_t column);
// The creation date as "2026-11-17"; as fullText() has it where it cannot be read.
std::string isoDateText(const JobRow& job);
std::int32_t dateKey(const JobRow& job);

} // namespace genutil
