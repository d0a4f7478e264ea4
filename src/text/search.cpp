#include "text/search.h"

#include "text/byte_pattern.h"
#include "text/letters.h"
#include "text/utf8.h"

#include <algorithm>
#include <chrono>

namespace genutil::text {

namespace {

// Searched between two looks at the clock.
constexpr std::size_t searchBlock = std::size_t{64} * 1024;
constexpr auto askEvery = std::chrono::milliseconds(100);

bool standsAlone(std::string_view text, std::size_t begin, std::size_t end) {
    if (end < text.size() && isWordCharacter(decodeUtf8(text, end).codePoint))
        return false;
    for (std::size_t back = 1; back <= std::min<std::size_t>(begin, 4); ++back)
        if (!isContinuation(text[begin - back]))
            return !isWordCharacter(decodeUtf8(text, begin - back).codePoint);
    return true;
}

// A few lines from the text's midst.
std::string_view sampleOf(const TextDocument& document) {
    const auto stretch = document.stretchAt(document.lineCount() / 2);
    return stretch.text.substr(stretch.text.size() / 2, searchBlock);
}

class Finder {
public:
    Finder(
        const TextDocument& document, const SearchQuery& query, const std::function<bool(std::size_t)>& goOn)
        : document_(document), pattern_(query.text, query.matchCase, sampleOf(document)),
          wholeWord_(query.wholeWord), goOn_(goOn) {}

    std::optional<TextRange> forward(TextPosition start);
    std::optional<TextRange> backward(TextPosition start);

private:
    enum class Wanted { First, Last };
    // The match that lies between two places of the text.
    std::optional<std::size_t> match(
        std::string_view text, std::size_t begin, std::size_t end, Wanted wanted) const;
    TextRange rangeAt(std::uint64_t offset) const;
    bool mayGoOn(std::uint64_t offset);

    const TextDocument& document_;
    BytePattern pattern_;
    bool wholeWord_;
    const std::function<bool(std::size_t)>& goOn_;
    std::chrono::steady_clock::time_point asked_ = std::chrono::steady_clock::now();
};

std::optional<std::size_t> Finder::match(
    std::string_view text, std::size_t begin, std::size_t end, Wanted wanted) const {
    PatternMatches matches(pattern_, text.substr(0, end), begin);
    std::optional<std::size_t> found;
    while (const auto next = matches.next()) {
        if (wholeWord_ && !standsAlone(text, *next, *next + pattern_.size()))
            continue;
        found = next;
        if (wanted == Wanted::First)
            break;
    }
    return found;
}

TextRange Finder::rangeAt(std::uint64_t offset) const {
    return {document_.positionAt(offset), document_.positionAt(offset + pattern_.size())};
}

bool Finder::mayGoOn(std::uint64_t offset) {
    const auto now = std::chrono::steady_clock::now();
    if (!goOn_ || now - asked_ < askEvery)
        return true;
    asked_ = now;
    return goOn_(document_.positionAt(offset).line);
}

// Matches may reach over the end of a block, so blocks overlap by one byte less than the pattern has.
std::optional<TextRange> Finder::forward(TextPosition start) {
    std::uint64_t from = document_.offsetOf(start);
    for (std::size_t line = document_.positionAt(from).line; line < document_.lineCount();) {
        const TextDocument::Stretch stretch = document_.stretchAt(line);
        const std::size_t begin = from > stretch.offset ? from - stretch.offset : 0;
        for (std::size_t block = begin; block < stretch.text.size(); block += searchBlock) {
            const std::size_t end = std::min(stretch.text.size(), block + searchBlock + pattern_.size() - 1);
            if (const auto found = match(stretch.text, block, end, Wanted::First))
                return rangeAt(stretch.offset + *found);
            if (!mayGoOn(stretch.offset + end))
                return std::nullopt;
        }
        line = stretch.firstLine + stretch.lines;
    }
    return std::nullopt;
}

std::optional<TextRange> Finder::backward(TextPosition start) {
    const std::uint64_t from = document_.offsetOf(start);
    for (std::size_t line = document_.positionAt(from).line + 1; line-- > 0;) {
        const TextDocument::Stretch stretch = document_.stretchAt(line);
        for (std::size_t end = std::min<std::uint64_t>(stretch.text.size(), from - stretch.offset);
             end > 0;) {
            const std::size_t block = end - std::min(end, searchBlock);
            const std::size_t reach =
                std::min<std::uint64_t>(end + pattern_.size() - 1, from - stretch.offset);
            const std::size_t behind = std::min(reach, stretch.text.size());
            if (const auto found = match(stretch.text, block, behind, Wanted::Last))
                return rangeAt(stretch.offset + *found);
            if (!mayGoOn(stretch.offset + block))
                return std::nullopt;
            end = block;
        }
        line = stretch.firstLine;
    }
    return std::nullopt;
}

} // namespace

std::optional<TextRange> find(const TextDocument& document, const SearchQuery& query, TextPosition start,
    SearchDirection direction, const std::function<bool(std::size_t line)>& goOn) {
    if (query.text.empty() || query.text.find_first_of("\r\n") != std::string::npos)
        return std::nullopt;
    Finder finder(document, query, goOn);
    return direction == SearchDirection::Forward ? finder.forward(start) : finder.backward(start);
}

} // namespace genutil::text
