#pragma once

#include "frame/component.h"

#include <cstdint>

namespace genutil {

// What the list of a job database's tables tells about the job.
struct CatalogueCounts {
    std::int32_t alphaIds = 0; // records of the alpha point-identifier table; 0 without that table
    std::int16_t traverseSets = 0;
    std::int16_t leastSquaresSets = 0;
};

// Counts the tables by their names, case-sensitively, as sysInfo names them. A table that vanishes meanwhile
// is left out.
CatalogueCounts countTables(Database& database, SystemInfo& sysInfo);

} // namespace genutil
