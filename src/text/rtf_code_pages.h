#pragma once

#include "text/encoding.h"
#include "text/rtf_tokens.h"

#include <string>
#include <string_view>

// Code pages go by number, as rich-text files write them.
namespace genutil::text::rtf {

inline constexpr int westernCodePage = 1252;
// Fonts of signs, in which each byte is the number of a sign: the one named Symbol, with its Greek letters,
// and all others.
inline constexpr int symbolCodePage = 43;
inline constexpr int signsCodePage = 42;

// The code page that goes with a font's character set; 0 for the document's own.
int codePageOfCharset(int charset);

LeadBytes leadBytesOf(int codePage);

// Of a sign in a font of signs. Where the sign is not known: its number's Latin-1 character, but a bullet for
// the usual list mark.
bool isOfSigns(int codePage);
char32_t signCharacter(unsigned char number, int codePage);

// UTF-8. A code page that `pages` does not know is read as windows-1252.
std::string decodeBytes(std::string_view bytes, int codePage, const CodePages& pages);

} // namespace genutil::text::rtf
