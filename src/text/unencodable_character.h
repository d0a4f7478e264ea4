#pragma once

#include "text/text_position.h"

#include <cstddef>
#include <stdexcept>
#include <string>

namespace genutil::text {

// A character that the encoding of a text cannot hold.
class UnencodableCharacter : public std::runtime_error {
public:
    // `column` is the number of characters before it in its line.
    UnencodableCharacter(
        TextPosition position, std::size_t column, char32_t character, const std::string& encoding);
    TextPosition position() const { return position_; }
    char32_t character() const { return character_; }

private:
    TextPosition position_;
    char32_t character_;
};

} // namespace genutil::text
