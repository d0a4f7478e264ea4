#pragma once

#include <string>
#include <string_view>

namespace genutil::text {

// The one character that stands for both cases of a letter of Latin, Greek or Cyrillic where both are single
// characters; all other characters stand for themselves.
char32_t foldCase(char32_t codePoint);

// The text with each character folded, as filters, orders and names compare; bytes that are no character
// stay.
std::string folded(std::string_view text);

// The text with the small letters of Latin, Greek and Cyrillic as capitals, where both are single characters.
std::string upperCased(std::string_view text);

// Whether a word goes on with it: letters, digits, marks on them and the underscore.
bool isWordCharacter(char32_t codePoint);

} // namespace genutil::text
