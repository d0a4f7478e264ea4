#pragma once

#include "text/text_document.h"

namespace genutil {

// Steps of the caret. A line is UTF-8 without its line end; a character is what a reader takes for one: a
// letter with its combining marks, joined emoji. None of these looks further than a few hundred bytes, or in
// the case of words tens of thousands, so that a line of any length costs the same.

std::size_t previousCodePoint(std::string_view line, std::size_t byte);
std::size_t nextCharacter(std::string_view line, std::size_t byte);
std::size_t previousCharacter(std::string_view line, std::size_t byte);
// The byte itself where a character starts, else the start of the one that holds it.
std::size_t characterStart(std::string_view line, std::size_t byte);

// From line to line past their ends; the position itself at the text's end or start.
text::TextPosition nextCharacter(const text::TextDocument& document, text::TextPosition position);
text::TextPosition previousCharacter(const text::TextDocument& document, text::TextPosition position);
text::TextPosition previousCodePoint(const text::TextDocument& document, text::TextPosition position);
// The start of the next word, of this or the previous one; line ends are stops.
text::TextPosition nextWord(const text::TextDocument& document, text::TextPosition position);
text::TextPosition previousWord(const text::TextDocument& document, text::TextPosition position);

// The word, the blanks or the signs around the place.
text::TextRange wordAt(const text::TextDocument& document, text::TextPosition position);
// The line with its end.
text::TextRange lineAt(const text::TextDocument& document, text::TextPosition position);

} // namespace genutil
