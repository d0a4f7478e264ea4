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
// no neighbour. A surrogate in the form of a character (three bytes) is one invalid character.
DecodedCharacter decodeUtf8(std::string_view bytes, std::size_t offset);

// Appends one character. Surrogates and values above U+10FFFF are appended as U+FFFD.
void appendUtf8(std::string& out, char32_t codePoint);

// The surrogate that the three bytes at `offset` stand for; 0 when they are anything else.
char16_t surrogateAt(std::string_view bytes, std::size_t offset);

// Whether the byte continues a character and starts none.
constexpr bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Bytes up to the first that is not ASCII.
std::size_t asciiPrefix(std::string_view bytes);

// Strict: no overlong forms, no surrogates, nothing above U+10FFFF, no character cut off at the end.
bool isValidUtf8(std::string_view bytes);
// Bytes up to the first that starts no valid character.
std::size_t validUtf8Prefix(std::string_view bytes);
// Whether more bytes could make a valid character of all of these.
bool beginsUtf8(std::string_view bytes);

enum class ByteOrder { LittleEndian, BigEndian };

// UTF-16 units in bytes, without a byte-order mark, as UTF-8. Surrogates without their partner become three
// bytes each, as surrogateAt() takes them; an odd last byte is left out.
std::string fromUtf16Bytes(std::string_view bytes, ByteOrder order);

// The same of UTF-32; what is no character becomes U+FFFD and makes `exact` false. Up to three last bytes are
// left out.
std::string fromUtf32Bytes(std::string_view bytes, ByteOrder order, bool& exact);

// Appends a character below U+110000, or a surrogate, in UTF-16 units.
void appendUtf16Bytes(std::string& out, char32_t codePoint, ByteOrder order);
// Appends a character in UTF-32.
void appendUtf32Bytes(std::string& out, char32_t codePoint, ByteOrder order);

} // namespace genutil::text
