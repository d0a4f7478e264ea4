#pragma once

#include "text/encoding.h"
#include "text/rich_text.h"

#include <string>
#include <string_view>

namespace genutil::text {

// Whether the bytes begin as a rich-text file does: "{\rtf", blanks before it allowed.
bool looksLikeRtf(std::string_view bytes);

// Reads a rich-text file: fonts, sizes, bold, italic, underline, strike, super- and subscript, colours,
// alignment, indents, tabs, spacing, lists, simple tables, page breaks, PNG and JPEG pictures, code pages by
// way of `pages`. All else is skipped. Damage never fails: what can be read before, between and behind it is
// kept, up to the brace that closes the document. Bytes that do not look like rich text are read as the lines
// of a plain text. Work and memory are bounded by the size of the input; nesting has no limit. Sizes are cut
// to 1 to 400 points, lengths to 31680 twips to either side, font names to 64 bytes, tab stops to 64 a
// paragraph, cells to 63 a row. `isWhole` (may be null) is set to whether nothing was skipped that a reader
// of the document would miss: headers, footers, notes, hidden text, fields, drawings, objects, pictures of
// other kinds.
RichText readRtf(std::string_view bytes, const CodePages& pages = basicCodePages(), bool* isWhole = nullptr);

// Writes plain ASCII, characters beyond it as \u with a "?" for readers that know none; tables get thin
// borders, which the text does not tell of. readRtf gives an equal text back, if the text is one that it
// could give: valid UTF-8, and within the limits above.
std::string writeRtf(const RichText& text);

} // namespace genutil::text
