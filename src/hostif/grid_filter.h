#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace genutil {

// A word that a row must hold.
struct FilterWord {
    std::string text;                  // in bareLetters()
    std::vector<std::int32_t> columns; // in one of these, ascending; none: in any
};

// The words of what a user types, which blanks part. "surveyor:smith" is a word in a column whose title
// begins so; only letters and digits of titles count, so "createdate:2026" and "h.datum:ed50" do too. A title
// that is meant exactly leaves out longer ones. Where no title begins so, it is a word like any other. Quotes
// keep blanks within a word: "old weir", "coord system:plane", surveyor:"van dam".
std::vector<FilterWord> filterWords(std::string_view typed, const std::vector<std::string>& titles);

} // namespace genutil
