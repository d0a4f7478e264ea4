#pragma once

#include "hostif/record_log.h"

#include <optional>
#include <string>

namespace genutil {

// As FileSystem promises them.
std::unique_ptr<RecordLog> makeRecordLog(const std::string& about);
std::optional<LeftLog> leftRecordLog(const std::string& about);

// The records of a log's bytes, up to the first that is not whole.
std::vector<std::string> recordsOf(std::string_view bytes);

} // namespace genutil
