#include "text/unencodable_character.h"

#include "text/character_width.h"
#include "text/utf8.h"

namespace genutil::text {
namespace {

std::string nameOf(char32_t character) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string hexadecimal;
    for (int shift = 20; shift >= 0; shift -= 4)
        if (shift < 16 || character >> shift != 0)
            hexadecimal += digits[(character >> shift) & 0xF];
    std::string name = "The character U+" + hexadecimal;
    if (!isInvisibleControl(character)) {
        name += " (";
        appendUtf8(name, character);
        name += ")";
    }
    return name;
}

} // namespace

UnencodableCharacter::UnencodableCharacter(
    TextPosition position, std::size_t column, char32_t character, const std::string& encoding)
    : std::runtime_error(nameOf(character) + " in line " + std::to_string(position.line + 1) + ", column " +
                         std::to_string(column + 1) + " cannot be written in the encoding " + encoding),
      position_(position), character_(character) {}

} // namespace genutil::text
