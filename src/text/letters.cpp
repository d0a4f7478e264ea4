#include "text/letters.h"

#include "text/utf8.h"

#include <array>

namespace genutil::text {

namespace {

constexpr bool between(char32_t codePoint, char32_t first, char32_t last) {
    return codePoint >= first && codePoint <= last;
}

constexpr char32_t foldLatin(char32_t c) {
    if (between(c, U'A', U'Z') || (between(c, 0x00C0, 0x00DE) && c != 0x00D7))
        return c + 0x20;
    if (c == 0x0178) // Y with diaeresis, whose small form is Latin-1
        return 0x00FF;
    // Pairs of a capital and its small letter: the capital is even here, odd there. The Turkish dotted and
    // dotless i (0130, 0131), the apostrophe n (0149) and the long s (017F) have no partner of their own.
    if (between(c, 0x0100, 0x012F) || between(c, 0x0132, 0x0137) || between(c, 0x014A, 0x0177))
        return c | 1;
    if (between(c, 0x0139, 0x0148) || between(c, 0x0179, 0x017E))
        return c % 2 == 1 ? c + 1 : c;
    return c;
}

constexpr char32_t foldGreek(char32_t c) {
    if (between(c, 0x0391, 0x03AB) && c != 0x03A2)
        return c + 0x20;
    if (between(c, 0x0388, 0x038A))
        return c + 0x25;
    switch (c) {
    case 0x0386:
        return 0x03AC;
    case 0x038C:
        return 0x03CC;
    case 0x038E:
    case 0x038F:
        return c + 0x3F;
    case 0x03C2: // final sigma
        return 0x03C3;
    default:
        return c;
    }
}

constexpr char32_t foldCyrillic(char32_t c) {
    if (between(c, 0x0400, 0x040F))
        return c + 0x50;
    if (between(c, 0x0410, 0x042F))
        return c + 0x20;
    if (between(c, 0x0460, 0x0481) || between(c, 0x048A, 0x04BF) || between(c, 0x04D0, 0x052F))
        return c | 1;
    if (c == 0x04C0)
        return 0x04CF;
    if (between(c, 0x04C1, 0x04CE))
        return c % 2 == 1 ? c + 1 : c;
    return c;
}

constexpr char32_t foldCaseOf(char32_t codePoint) {
    if (codePoint < 0x0180)
        return foldLatin(codePoint);
    if (codePoint < 0x0400)
        return foldGreek(codePoint);
    return codePoint < 0x0530 ? foldCyrillic(codePoint) : codePoint;
}

} // namespace

char32_t foldCase(char32_t codePoint) {
    return foldCaseOf(codePoint);
}

namespace {

constexpr std::size_t lettersEnd = 0x0530;

// The inverse of foldCase().
constexpr std::array<char16_t, lettersEnd> capitals = [] {
    std::array<char16_t, lettersEnd> table{};
    for (char32_t c = 0; c < lettersEnd; ++c)
        table[c] = char16_t(c);
    for (char32_t c = 0; c < lettersEnd; ++c)
        if (const char32_t small = foldCaseOf(c); small != c && c != 0x03C2)
            table[small] = char16_t(c);
    return table;
}();

template<class Convert>
std::string converted(std::string_view text, Convert convert) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            result += static_cast<char>(convert(static_cast<unsigned char>(text[at++])));
            continue;
        }
        const DecodedCharacter next = decodeUtf8(text, at);
        if (next.valid)
            appendUtf8(result, convert(next.codePoint));
        else
            result += text.substr(at, next.length);
        at += next.length;
    }
    return result;
}

} // namespace

std::string folded(std::string_view text) {
    return converted(text, [](char32_t c) { return foldCase(c); });
}

std::string upperCased(std::string_view text) {
    return converted(text, [](char32_t c) { return c < lettersEnd ? char32_t(capitals[c]) : c; });
}

bool isWordCharacter(char32_t c) {
    if (c < 0x80)
        return between(c, U'0', U'9') || between(c, U'A', U'Z') || between(c, U'a', U'z') || c == U'_';
    if (c < 0xC0)
        return c == 0xAA || c == 0xB5 || c == 0xBA;
    if (c == 0xD7 || c == 0xF7 || c == 0x037E || c == 0x0387 || c == 0x0482)
        return false;
    // Beyond these scripts all counts as letters but the blocks of punctuation, symbols and pictures.
    return !between(c, 0x02C2, 0x02DF) && !between(c, 0x2000, 0x2BFF) && !between(c, 0x3000, 0x3020) &&
           !between(c, 0xD800, 0xF8FF) && !between(c, 0xFE10, 0xFE6F) && !between(c, 0xFF01, 0xFF0F) &&
           !between(c, 0xFFE0, 0xFFFF) && !between(c, 0x1F000, 0x1FAFF);
}

} // namespace genutil::text
