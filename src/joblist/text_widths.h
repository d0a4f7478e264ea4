#pragma once

#include "hostif/desktop.h"

#include <string>

namespace genutil {

// The width of a text in twips; of a long one, the width of as much of its beginning as is wider than
// `enough`. A description can be a book.
double textWidthUpTo(Desktop& desktop, const Font& font, const std::string& text, double enough);

} // namespace genutil
