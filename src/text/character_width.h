#pragma once

#include <cstddef>
#include <string_view>

namespace genutil::text {

inline constexpr std::size_t tabStop = 8;

// Columns that a character takes in a fixed-pitch text: 0 for combining marks and format characters, 2 for
// East Asian wide and full-width characters and for emoji, 1 for all others, invisible controls among them.
int characterWidth(char32_t codePoint);

// Whether nothing would be seen of the character although it is of consequence: control characters except the
// tab, marks that change the direction of writing, spaces and joiners without width. A view shows a mark in
// its place. The joiners that scripts need between letters, U+200C and U+200D, are none of these.
bool isInvisibleControl(char32_t codePoint);

// Columns of a line (UTF-8, without its line end): the sum of its characters' widths, a tab reaching to the
// next multiple of tabStop, invalid bytes as the U+FFFD that stands for them. Characters are not joined into
// clusters, so an emoji made of several joined emoji counts as the sum of its parts.
std::size_t columnsOf(std::string_view line);

// Counts from `position` on and moves it: either over a run of printable ASCII or over one other character.
// Returns the column reached when the text before was `column` columns wide. `position` must be below
// text.size().
std::size_t advanceColumns(std::string_view text, std::size_t& position, std::size_t column);

} // namespace genutil::text
