#include "hostif/grid_filter.h"

#include "text/bare_letters.h"
#include "text/letters.h"
#include "text/utf8.h"

#include <algorithm>

namespace genutil {
namespace {

// Takes a word off the front, without its quotes. A quote that nothing has ended yet reaches to the end: the
// user is typing. One within a word is a character, an inch.
std::string takeWord(std::string_view& rest) {
    std::string word;
    bool inQuotes = false;
    std::size_t at = 0;
    for (; at < rest.size() && (inQuotes || rest[at] != ' '); ++at)
        if (rest[at] == '"' && (inQuotes || word.empty() || word.ends_with(':')))
            inQuotes = !inQuotes;
        else
            word += rest[at];
    rest.remove_prefix(at);
    return word;
}

std::string lettersAndDigits(std::string_view text) {
    const std::string bare = text::bareLetters(text);
    std::string kept;
    for (std::size_t at = 0; at < bare.size();) {
        const text::DecodedCharacter next = text::decodeUtf8(bare, at);
        if (next.codePoint != U'_' && text::isWordCharacter(next.codePoint))
            kept.append(bare, at, next.length);
        at += next.length;
    }
    return kept;
}

std::vector<std::int32_t> columnsNamed(const std::string& name, const std::vector<std::string>& titles) {
    std::vector<std::int32_t> exact, columns;
    for (std::size_t i = 0; i < titles.size() && !name.empty(); ++i) {
        const std::string title = lettersAndDigits(titles[i]);
        if (title.starts_with(name))
            (title == name ? exact : columns).push_back(std::int32_t(i));
    }
    return exact.empty() ? columns : exact;
}

} // namespace

std::vector<FilterWord> filterWords(std::string_view typed, const std::vector<std::string>& titles) {
    std::vector<FilterWord> words;
    while (typed.remove_prefix(std::min(typed.find_first_not_of(' '), typed.size())), !typed.empty()) {
        const std::string word = takeWord(typed);
        FilterWord& next = words.emplace_back();
        if (const std::size_t colon = word.find(':'); colon != std::string::npos)
            next.columns = columnsNamed(lettersAndDigits(std::string_view(word).substr(0, colon)), titles);
        next.text = text::bareLetters(next.columns.empty() ? word : word.substr(word.find(':') + 1));
    }
    return words;
}

} // namespace genutil
