#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The one place that knows the byte forms of Unicode text. Strings are UTF-8 inside the component; UTF-16
// appears only where the automation interfaces and the toolkit ask for it. Nothing here throws except on lack
// of memory.
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

// Invalid bytes become U+FFFD, as decodeUtf8 takes them.
std::u16string toUtf16(std::string_view utf8);

// Surrogates without their partner become U+FFFD.
std::string fromUtf16(std::u16string_view utf16);

enum class ByteOrder { LittleEndian, BigEndian };

// As fromUtf16, for units still in bytes (no byte-order mark expected); an odd last byte becomes U+FFFD.
std::string fromUtf16Bytes(std::string_view bytes, ByteOrder order);

} // namespace genutil::text
