#pragma once

#include "text/encoding.h"

#include <optional>
#include <string>
#include <string_view>

// Between the bytes of files and UTF-8, for every encoding: the ones that this floor knows itself and those
// of a CodePages. UTF-8 needs neither.
namespace genutil::text {

// The name among `encodings` that is this one but for case; nullptr for all others.
const char* ownEncoding(std::string_view name);

struct DecodedText {
    std::string text;
    bool exact = true; // encoding the text again gives the same bytes
    std::string tail;  // bytes at the end that are half of a unit
};
// Nothing for an encoding that is not known.
std::optional<DecodedText> decodeText(
    const std::string& name, std::string_view bytes, const CodePages& pages);

// Throws std::invalid_argument for an encoding that is not known.
CodePages::Encoded encodeText(const std::string& name, std::string_view text, const CodePages& pages);

// The byte-order mark of the encoding; "" where it has none.
std::string_view byteOrderMark(std::string_view name);

[[noreturn]] void refuseEncoding(const std::string& name);

} // namespace genutil::text
