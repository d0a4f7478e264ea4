#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The byte forms of Unicode text in files. Strings are UTF-8 inside the component. Nothing here throws except
// on lack of memory.
namespace genutil::text {

inline constexpr char32_t replacementCharacter = U'\uFFFD';

struct DecodedCharacter {
    char32_t codePoint; // U+FFFD when the bytes are not a character
    std::size_t length; // bytes taken, at least 1; 0 only when the offset is at or past the end
    bool valid;
};

// The character that starts at `offset`. Bytes that start no valid character are taken up to their maximal
// subpart: the longest run that could still have begun one, so a damaged character costs one U+FFFD and eats
// no neighbour.
DecodedCharacter decodeUtf8(std::string_view bytes, std::size_t offset);

// Appends one character. Surrogates and values above U+10FFFF are appended as U+FFFD.
void appendUtf8(std::string& out, char32_t codePoint);

// Strict: no overlong forms, no surrogates, nothing above U+10FFFF, no character cut off at the end.
bool isValidUtf8(std::string_view bytes);

enum class ByteOrder { LittleEndian, BigEndian };

// UTF-16 units in bytes, without a byte-order mark, as UTF-8. Surrogates without their partner and an odd
// last byte become U+FFFD.
std::string fromUtf16Bytes(std::string_view bytes, ByteOrder order);

} // namespace genutil::text
