#pragma once

#include "text/encoding.h"
#include "text/transcode.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace genutil::text {

// So many bytes at the front of a text tell whether it is UTF-16.
inline constexpr std::size_t utf16EvidenceSize = 4096;

// Which UTF-16 a text without byte-order mark is in: text of mostly ASCII characters has a zero in nearly
// every other place. Nullptr for none.
const char* utf16WithoutMark(std::string_view front);

struct DetectedText {
    std::string encoding;
    DecodedText decoded;
};
// Decodes bytes that are not UTF-8: as what `pages` guesses, if they bear it out; as its system code page, if
// they are a text in it; else as windows-1252.
DetectedText detectAndDecode(std::string_view bytes, const CodePages& pages);

} // namespace genutil::text
