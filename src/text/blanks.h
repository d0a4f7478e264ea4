#pragma once

#include <string>
#include <string_view>

namespace genutil::text {

// Whether the text holds nothing but blanks.
inline bool isBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

// The text without the blanks around it.
inline std::string trimBlanks(std::string_view text) {
    if (isBlank(text))
        return {};
    const std::size_t first = text.find_first_not_of(' ');
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

} // namespace genutil::text
