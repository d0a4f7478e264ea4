#include "joblist/job_catalogue.h"

#include "joblist/job_errors.h"

namespace genutil {

CatalogueCounts countTables(Database& database, SystemInfo& sysInfo) {
    const std::string details = sysInfo.JobDetailsTable();
    const std::string alphaIds = sysInfo.AlphaIdTable();
    const std::string traverseSet = sysInfo.TraverseSetPrefix();
    const std::string leastSquaresSet = sysInfo.LSSetPrefix();

    CatalogueCounts counts;
    std::int16_t tables = 0;
    skippingMissingItems([&] { tables = database.tableCount(); });
    for (std::int16_t index = 0; index < tables; ++index)
        skippingMissingItems([&] {
            const std::string name = database.tableName(index);
            // The first rule that applies decides; MSys tables are the database engine's own. The product's
            // other tables share no name or prefix with those that are counted.
            if (name.starts_with("MSys") || name == details)
                return;
            if (name.starts_with(traverseSet))
                ++counts.traverseSets;
            else if (name == alphaIds)
                counts.alphaIds = database.tableRecordCount(index);
            else if (name.starts_with(leastSquaresSet))
                ++counts.leastSquaresSets;
        });
    return counts;
}

} // namespace genutil
