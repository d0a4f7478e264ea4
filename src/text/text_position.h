#pragma once

#include <compare>
#include <cstddef>

namespace genutil::text {

// A place in a text: before byte `byte` of line `line`, both counted from 0; a line's end is its last place.
struct TextPosition {
    std::size_t line = 0;
    std::size_t byte = 0;
    friend auto operator<=>(const TextPosition&, const TextPosition&) = default;
};

// What lies between two places, `from` not behind `to`.
struct TextRange {
    TextPosition from;
    TextPosition to;
    bool isEmpty() const { return from == to; }
    friend bool operator==(const TextRange&, const TextRange&) = default;
};

// An edit as a view sees it: what lay between `from` and `oldEnd` has become what lies between `from` and
// `newEnd`. The lines before from.line are untouched; those behind oldEnd.line are the same under other
// numbers.
struct TextChange {
    TextPosition from;
    TextPosition oldEnd;
    TextPosition newEnd;
    friend bool operator==(const TextChange&, const TextChange&) = default;
};

} // namespace genutil::text
