#pragma once

#include "frame/component.h"
#include "joblist/job_catalogue.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace genutil {

inline constexpr std::size_t jobColumnCount = 27;

// A job's texts; the first is that of column 1.
using JobRow = std::array<std::string, jobColumnCount>;

// What a row is made of. The records of an incomplete job are null, its details excepted.
struct JobSummary {
    Component& component;
    std::string file; // name and extension
    RecordPtr jobDetails, jobCfg, jobGeneral;
    std::shared_ptr<Recordset> detailsRset;
    CatalogueCounts counts;
};

enum class ColumnAlignment : char { Left = '<', Centre = '^', Right = '>' };

// Which jobs have a text in the column.
enum class ColumnFill { EveryJob, CompleteJobs };

enum class ColumnContent { Text, Number };

// Where a column is written when not all are asked for.
enum class ColumnUse { Main, Further };

struct JobColumn {
    const char* title;
    ColumnAlignment alignment;
    ColumnContent content;
    ColumnUse use;
    std::string (*text)(const JobSummary& job);
    int limit = 0; // leading characters that the list shows; 0: all
    ColumnFill fill = ColumnFill::CompleteJobs;
};

std::span<const JobColumn, jobColumnCount> jobColumns();

// What the list as text has behind those columns: facts of the job's file. Numbers go on counting.
namespace jobcolumn {
inline constexpr std::int32_t FileSize = std::int32_t(jobColumnCount) + 1;
inline constexpr std::int32_t FileChanged = FileSize + 1;
} // namespace jobcolumn

// Alignments and titles in the notation of a grid's format string: "<Job|^Create Date|...".
std::string jobColumnsFormat();

} // namespace genutil
