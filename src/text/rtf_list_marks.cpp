#include "text/rtf_writer.h"

namespace genutil::text::rtf {

namespace {

// a to z, aa, ab ...
std::string letters(int count, char first) {
    std::string text;
    for (; count > 0; count = (count - 1) / 26)
        text.insert(text.begin(), static_cast<char>(first + (count - 1) % 26));
    return text;
}

// Lower case; in figures above what the numerals are made for.
std::string roman(int count) {
    struct Numeral {
        int value;
        const char* digits;
    };
    constexpr Numeral numerals[] = {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"}, {90, "xc"},
        {50, "l"}, {40, "xl"}, {10, "x"}, {9, "ix"}, {5, "v"}, {4, "iv"}, {1, "i"}};
    if (count > 3999)
        return std::to_string(count);
    std::string text;
    for (const Numeral& numeral : numerals)
        for (; count >= numeral.value; count -= numeral.value)
            text += numeral.digits;
    return text;
}

std::string upper(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return text;
}

} // namespace

std::string listMark(ListEntry::Kind kind, int count) {
    switch (kind) {
    case ListEntry::Kind::Bullet:
        break;
    case ListEntry::Kind::Decimal:
        return std::to_string(count) + '.';
    case ListEntry::Kind::LowerLetter:
        return letters(count, 'a') + '.';
    case ListEntry::Kind::UpperLetter:
        return letters(count, 'A') + '.';
    case ListEntry::Kind::LowerRoman:
        return roman(count) + '.';
    case ListEntry::Kind::UpperRoman:
        return upper(roman(count)) + '.';
    }
    return "\u2022";
}

} // namespace genutil::text::rtf
