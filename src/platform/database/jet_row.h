#pragma once

#include "hostif/value.h"
#include "platform/database/jet_file.h"

#include <string_view>

namespace genutil::jet {

// The field's value in a record of the table: dates as shortMomentText() writes them, which is what the
// engine that made the file gives where a text is wanted; amounts of money and decimals as doubles. Null also
// for a field that was added to the table after the record was written. Throws Damage; Error TypeMismatch,
// naming the type, for one that is not read (kindsOfField).
Value fieldOf(File& file, const Table& table, const Column& column, std::string_view record);

} // namespace genutil::jet
