#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
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
    const std::string_view its = bytes.substr(at, sizeof(Number));
    if (its.size() < sizeof(Number))
        throw std::out_of_range("a number ends outside");
    Number number = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&number, its.data(), sizeof number);
        return number;
    }
    for (std::size_t i = 0; i < sizeof number; ++i)
        number = static_cast<Number>(number | Number(static_cast<unsigned char>(its[i])) << (8 * i));
    return number;
}

} // namespace genutil::text
