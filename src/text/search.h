#pragma once

#include "text/text_document.h"

#include <functional>
#include <optional>
#include <string>

namespace genutil::text {

struct SearchQuery {
    std::string text; // within one line; an empty one is found nowhere
    bool matchCase = false;
    bool wholeWord = false; // no letter, digit or underscore stands directly before or behind
    friend bool operator==(const SearchQuery&, const SearchQuery&) = default;
};

enum class SearchDirection { Forward, Backward };

// The next place of the query's text: forward, the first that starts at or behind `start`; backward, the last
// that ends at or before it. Nothing when there is none up to the text's end or start. `goOn` (may be empty)
// is asked a few times a second with the line reached; False gives up, as if nothing were found. Letters
// beyond ASCII are compared without regard to case where both cases are single characters of Latin, Greek or
// Cyrillic.
std::optional<TextRange> find(const TextDocument& document, const SearchQuery& query, TextPosition start,
    SearchDirection direction, const std::function<bool(std::size_t line)>& goOn = {});

} // namespace genutil::text
