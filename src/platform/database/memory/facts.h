#pragma once

#include "hostif/error.h"
#include "hostif/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace genutil::memory {

struct TableFacts {
    std::string name;
    std::optional<std::int32_t> recordCount; // nothing: was not asked for
};

struct FieldFacts {
    std::string name;
    std::variant<Value, std::string> value; // a text: what was said of a field that the table does not have
};

// Of one table, as it is when it has just been opened.
struct RecordFacts {
    std::string table; // as it was named
    std::int32_t recordCount = 0;
    bool isBof = false;
    bool isEof = false;
    std::vector<FieldFacts> fields; // those that were asked for, in that order
};

// What was asked of a job database, with the answers.
struct Facts {
    bool mayHaveLog = false; // a log beside the file may hold later changes
    std::vector<TableFacts> tables;
    std::optional<RecordFacts> record;
};

std::string encode(const Facts& facts);
// Nothing for bytes that encode() has not made.
std::optional<Facts> decode(std::string_view bytes);

} // namespace genutil::memory
