#pragma once

#include "hostif/error.h"
#include "hostif/value.h"

#include <cstdint>
#include <limits>
#include <string>

// Where a selection starts and how long it is, as host objects read and set it by name: in UTF-8 units.
namespace genutil {

// Overflow for more units than a 32-bit number counts.
inline Value textUnits(std::uint64_t units) {
    if (units > std::uint64_t(std::numeric_limits<std::int32_t>::max()))
        throw Error(
            errors::Overflow, "A selection at unit " + std::to_string(units) + " is too far in the text");
    return Value(std::int32_t(units));
}

inline std::uint64_t textUnits(const Value& value) {
    const std::int32_t count = value.toInt32();
    if (count < 0)
        throw Error(
            errors::InvalidCall, "A selection starts and extends by 0 or more, not " + std::to_string(count));
    return std::uint64_t(count);
}

} // namespace genutil
