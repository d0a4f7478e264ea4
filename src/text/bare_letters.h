#pragma once

#include <string>
#include <string_view>

namespace genutil::text {

// The text as users search for it: each letter folded as folded() does and without its accents, so that
// "Müller" in either Unicode form and "muller" are the same; "ß" is "ss", "ø" is "o", "æ" is "ae". Bytes that
// are no character stay.
std::string bareLetters(std::string_view text);

} // namespace genutil::text
