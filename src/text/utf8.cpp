#include "text/utf8.h"

#include <cstdint>
#include <cstring>

namespace genutil::text {

namespace {

// What may follow a lead byte. The bounds of the first continuation byte keep out overlong forms, surrogates
// and values above U+10FFFF; all later continuation bytes are 80..BF.
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
        return {2, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    return {3, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
        static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
}

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

template<typename UnitAt>
std::string encodeUnits(std::size_t count, UnitAt unitAt) {
    std::string out;
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        char32_t unit = unitAt(i);
        if (isHighSurrogate(unit) && i + 1 < count && isLowSurrogate(unitAt(i + 1)))
            unit = 0x10000 + ((unit - 0xD800) << 10) + (unitAt(++i) - 0xDC00);
        appendUtf8(out, unit);
    }
    return out;
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
    return {codePoint, sequence.following + 1, true};
}

void appendUtf8(std::string& out, char32_t codePoint) {
    if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
        codePoint = replacementCharacter;
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

bool isValidUtf8(std::string_view bytes) {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::size_t position = 0;
    while (position < bytes.size()) {
        std::uint64_t word = 0;
        if (bytes.size() - position >= sizeof word) {
            std::memcpy(&word, bytes.data() + position, sizeof word);
            if ((word & highBits) == 0) {
                position += sizeof word;
                continue;
            }
        }
        const DecodedCharacter character = decodeUtf8(bytes, position);
        if (!character.valid)
            return false;
        position += character.length;
    }
    return true;
}

std::string fromUtf16Bytes(std::string_view bytes, ByteOrder order) {
    const std::size_t low = order == ByteOrder::LittleEndian ? 0 : 1;
    std::string out = encodeUnits(bytes.size() / 2, [&](std::size_t i) {
        const auto byteAt = [&](std::size_t at) -> char32_t { return static_cast<unsigned char>(bytes[at]); };
        return byteAt(2 * i + low) | (byteAt(2 * i + 1 - low) << 8);
    });
    if (bytes.size() % 2 != 0)
        appendUtf8(out, replacementCharacter);
    return out;
}

} // namespace genutil::text
