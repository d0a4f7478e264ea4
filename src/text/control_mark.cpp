#include "text/control_mark.h"

#include "text/character_width.h"

#include <algorithm>
#include <array>

namespace genutil::text {
namespace {

struct Sign {
    char32_t character;
    char sign;
};

constexpr std::array signs{Sign{0x00AD, '-'}, Sign{0x061C, '~'}, Sign{0x200B, '.'}, Sign{0x200E, '>'},
    Sign{0x200F, '<'}, Sign{0x2028, ';'}, Sign{0x2029, ':'}, Sign{0x202A, '}'}, Sign{0x202B, '{'},
    Sign{0x202C, '|'}, Sign{0x202D, ')'}, Sign{0x202E, '('}, Sign{0x2060, '+'}, Sign{0x2066, '6'},
    Sign{0x2067, '7'}, Sign{0x2068, '8'}, Sign{0x2069, '9'}, Sign{0xFEFF, '='}};

} // namespace

char controlMark(char32_t character) {
    if (character < 0x20)
        return character == '\t' ? '\0' : char('@' + character);
    if (character < 0x7F)
        return '\0';
    if (character == 0x7F)
        return '?';
    if (character < 0xA0) {
        const char letter = char('@' + (character - 0x80));
        return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
    }
    if (const auto* known = std::ranges::find(signs, character, &Sign::character); known != signs.end())
        return known->sign;
    return isInvisibleControl(character) ? '*' : '\0';
}

} // namespace genutil::text
