#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace genutil::text {

// Numbers in a file of our own, the lowest byte first.
template<std::unsigned_integral Number>
void appendNumber(std::string& bytes, Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i)
        bytes += static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
}

// The bytes must be there.
template<std::unsigned_integral Number = std::uint64_t>
Number numberAt(std::string_view bytes, std::size_t at) {
    Number number = 0;
    for (std::size_t i = 0; i < sizeof number; ++i)
        number |= Number(static_cast<unsigned char>(bytes.at(at + i))) << (8 * i);
    return number;
}

} // namespace genutil::text
