#pragma once

#include <QString>

#include <cstddef>
#include <string_view>

namespace genutil {

// Scripts whose letters join, stack or change places, so that only a whole run of them looks right.
bool isComplex(char32_t character);

// One past the run that begins with the complex character at `begin`. A run holds the single blanks between
// its words, and no more than a thousand bytes.
std::size_t scriptRunEnd(std::string_view line, std::size_t begin);

// The start of the run that may reach over the byte, or the byte itself.
std::size_t scriptRunStart(std::string_view line, std::size_t byte);

// One character as it is painted: a letter with marks looks best as the one that the font itself has, and no
// more than some thirty marks are looked at.
QString composed(std::string_view character);

} // namespace genutil
