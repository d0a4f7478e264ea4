#pragma once

#include <algorithm>
#include <string>
#include <string_view>

// Letters of names and key words, which are ASCII in every locale; all other bytes stay as they are.
namespace genutil::text {

constexpr char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string asciiLower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return asciiLower(c); });
    return lower;
}

inline bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return asciiLower(c); };
    return std::ranges::equal(a, b, {}, lower, lower);
}

inline bool endsWithIgnoringCase(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && equalsIgnoringCase(text.substr(text.size() - end.size()), end);
}

} // namespace genutil::text
