#pragma once

#include "hostif/value.h"
#include "platform/database/jet_file.h"

#include <string_view>

namespace genutil::jet {

// The field's value in a record of the table, exactly as stored: dates as days since 30 December 1899,
// amounts of money as doubles. Null also for a field that was added to the table after the record was
// written. Throws Damage; Error TypeMismatch for a kind of field that is not read, pictures and binaries.
Value fieldOf(File& file, const Table& table, const Column& column, std::string_view record);

} // namespace genutil::jet
