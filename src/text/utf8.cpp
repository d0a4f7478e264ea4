#include "text/utf8.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace genutil::text {

namespace {

// What may follow a lead byte. The bounds of the first continuation byte keep out overlong forms and values
// above U+10FFFF; all later continuation bytes are 80..BF.
struct Sequence {
    std::size_t following; // 0: not a lead byte
    unsigned char low;
    unsigned char high;
};

Sequence sequenceOf(unsigned char lead) {
    if (lead < 0xC2 || lead > 0xF4)
        return {0, 0, 0};
    if (lead < 0xE0)
        return {1, 0x80, 0xBF};
    if (lead < 0xF0)
        return {2, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80), 0xBF};
    return {3, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
        static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
}

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
bool isSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

// Appends any value below 0x110000 in the byte form of a character.
void appendForm(std::string& out, char32_t codePoint) {
    const auto push = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    const auto pushContinuation = [&](int shift) { push(0x80 | ((codePoint >> shift) & 0x3F)); };
    if (codePoint < 0x80) {
        push(codePoint);
    } else if (codePoint < 0x800) {
        push(0xC0 | (codePoint >> 6));
        pushContinuation(0);
    } else if (codePoint < 0x10000) {
        push(0xE0 | (codePoint >> 12));
        pushContinuation(6);
        pushContinuation(0);
    } else {
        push(0xF0 | (codePoint >> 18));
        pushContinuation(12);
        pushContinuation(6);
        pushContinuation(0);
    }
}

} // namespace

DecodedCharacter decodeUtf8(std::string_view bytes, std::size_t offset) {
    if (offset >= bytes.size())
        return {replacementCharacter, 0, false};
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byteAt(offset);
    if (lead < 0x80)
        return {lead, 1, true};

    Sequence sequence = sequenceOf(lead);
    if (sequence.following == 0)
        return {replacementCharacter, 1, false};
    char32_t codePoint = lead & (0x3Fu >> sequence.following);
    for (std::size_t taken = 1; taken <= sequence.following; ++taken) {
        if (offset + taken >= bytes.size())
            return {replacementCharacter, taken, false};
        const unsigned char byte = byteAt(offset + taken);
        if (byte < sequence.low || byte > sequence.high)
            return {replacementCharacter, taken, false};
        codePoint = (codePoint << 6) | (byte & 0x3Fu);
        sequence.low = 0x80;
        sequence.high = 0xBF;
    }
    if (isSurrogate(codePoint))
        return {replacementCharacter, 3, false};
    return {codePoint, sequence.following + 1, true};
}

void appendUtf8(std::string& out, char32_t codePoint) {
    appendForm(out, codePoint > 0x10FFFF || isSurrogate(codePoint) ? replacementCharacter : codePoint);
}

char16_t surrogateAt(std::string_view bytes, std::size_t offset) {
    if (bytes.size() < offset + 3)
        return 0;
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[offset + i]); };
    if (byteAt(0) != 0xED || byteAt(1) < 0xA0 || byteAt(1) > 0xBF || !isContinuation(bytes[offset + 2]))
        return 0;
    return static_cast<char16_t>(0xD000 | ((byteAt(1) & 0x3F) << 6) | (byteAt(2) & 0x3F));
}

std::size_t asciiPrefix(std::string_view bytes) {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::size_t position = 0;
    for (std::uint64_t word = 0; bytes.size() - position >= sizeof word; position += sizeof word) {
        std::memcpy(&word, bytes.data() + position, sizeof word);
        if ((word & highBits) != 0)
            break;
    }
    while (position < bytes.size() && static_cast<unsigned char>(bytes[position]) < 0x80)
        ++position;
    return position;
}

bool isValidUtf8(std::string_view bytes) {
    return validUtf8Prefix(bytes) == bytes.size();
}

std::size_t validUtf8Prefix(std::string_view bytes) {
    std::size_t position = 0;
    for (;;) {
        position += asciiPrefix(bytes.substr(position));
        // Latin, Greek and Cyrillic letters, which stand in rows, are passed over quickly.
        while (bytes.size() - position >= 2 && bytes[position] >= '\xC2' && bytes[position] <= '\xDF' &&
               isContinuation(bytes[position + 1]))
            position += 2;
        const DecodedCharacter character = decodeUtf8(bytes, position);
        if (!character.valid)
            return position;
        position += character.length;
    }
}

bool beginsUtf8(std::string_view bytes) {
    if (bytes.empty())
        return true;
    const auto lead = static_cast<unsigned char>(bytes[0]);
    return bytes.size() <= sequenceOf(lead).following && decodeUtf8(bytes, 0).length == bytes.size() &&
           !(lead == 0xED && bytes.size() > 1 && static_cast<unsigned char>(bytes[1]) >= 0xA0);
}

namespace {

// The usual case, a block of units at a time, in a form that compilers make vectors of. How many units were
// taken: a block or none.
std::size_t appendAscii(std::string& out, std::string_view bytes, ByteOrder order) {
    static_assert(std::endian::native == std::endian::little);
    std::array<std::uint16_t, 16> units;
    if (bytes.size() < sizeof units)
        return 0;
    std::memcpy(units.data(), bytes.data(), sizeof units);
    std::uint16_t bits = 0;
    for (const std::uint16_t unit : units)
        bits |= unit;
    const bool isLittle = order == ByteOrder::LittleEndian;
    if ((bits & (isLittle ? 0xFF80 : 0x80FF)) != 0)
        return 0;
    std::array<char, units.size()> characters;
    for (std::size_t i = 0; i < units.size(); ++i)
        characters[i] = static_cast<char>(isLittle ? units[i] : units[i] >> 8);
    out.append(characters.data(), characters.size());
    return characters.size();
}

} // namespace

std::string fromUtf16Bytes(std::string_view bytes, ByteOrder order) {
    const std::size_t low = order == ByteOrder::LittleEndian ? 0 : 1;
    const std::size_t count = bytes.size() / 2;
    const auto unitAt = [&](std::size_t i) {
        const auto byteAt = [&](std::size_t at) -> char32_t { return static_cast<unsigned char>(bytes[at]); };
        return byteAt(2 * i + low) | (byteAt(2 * i + 1 - low) << 8);
    };
    std::string out;
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (const std::size_t length = appendAscii(out, bytes.substr(2 * i), order); length > 0) {
            i += length - 1;
            continue;
        }
        char32_t unit = unitAt(i);
        if (isHighSurrogate(unit) && i + 1 < count && isLowSurrogate(unitAt(i + 1)))
            unit = 0x10000 + ((unit - 0xD800) << 10) + (unitAt(++i) - 0xDC00);
        appendForm(out, unit);
    }
    return out;
}

void appendUtf16Bytes(std::string& out, char32_t codePoint, ByteOrder order) {
    const auto push = [&](char32_t unit) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        out.push_back(order == ByteOrder::LittleEndian ? low : high);
        out.push_back(order == ByteOrder::LittleEndian ? high : low);
    };
    if (codePoint >= 0x10000) {
        push(0xD800 + ((codePoint - 0x10000) >> 10));
        push(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    } else {
        push(codePoint);
    }
}

std::string fromUtf32Bytes(std::string_view bytes, ByteOrder order, bool& exact) {
    std::string text;
    text.reserve(bytes.size() / 4);
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
        char32_t codePoint = 0;
        for (std::size_t i = 0; i < 4; ++i)
            codePoint = codePoint << 8 |
                        static_cast<unsigned char>(bytes[at + (order == ByteOrder::BigEndian ? i : 3 - i)]);
        exact = exact && codePoint < 0x110000 && (codePoint & ~char32_t{0x7FF}) != 0xD800;
        appendUtf8(text, codePoint);
    }
    return text;
}

void appendUtf32Bytes(std::string& out, char32_t codePoint, ByteOrder order) {
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<char>(codePoint >> 8 * (order == ByteOrder::BigEndian ? 3 - i : i)));
}

} // namespace genutil::text
