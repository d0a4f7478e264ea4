#pragma once

#include "hostif/database.h"

#include <memory>

namespace kestal {

/// The records of least-squares options of a job. Those of its data pages hold the page's number in
/// "FileType"; the job's own holds none.
enum class OptionRecords { OfPages, OfJob };

/// Those of a kind, in their order; records of the other kind are passed over, and one that is added is of
/// the kind that its fields make it. A record whose "FileType" is no number is of no page and not the job's.
std::shared_ptr<genutil::Recordset> optionRecords(
    std::shared_ptr<genutil::Recordset> table, OptionRecords kind);

} // namespace kestal
