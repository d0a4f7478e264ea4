#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace genutil::text {

// A word to be searched in UTF-8, with or without regard to case. Both cases of every letter that foldCase()
// knows have the same number of bytes, so that a match has as many bytes as the word.
class BytePattern {
public:
    // The word must not be empty. `sample` is a part of the text that will be searched: the place of the word
    // whose bytes are rarest in it is what is looked for.
    BytePattern(std::string_view word, bool matchCase, std::string_view sample);

    std::size_t size() const { return size_; }

private:
    friend class PatternMatches;
    // What may stand in the place of one character: its bytes in each case.
    struct Place {
        std::size_t offset;
        std::vector<std::string> forms;
    };
    void chooseKey(std::string_view sample);
    bool matchesAt(const char* text) const;

    std::size_t size_;
    std::vector<Place> places_;
    std::size_t keyOffset_ = 0;
    std::string keyBytes_; // all that may stand at keyOffset_
};

// The places where a pattern matches a text, one after the other; they may overlap.
class PatternMatches {
public:
    // Both must outlive this. `from` is where the first match may begin.
    PatternMatches(const BytePattern& pattern, std::string_view text, std::size_t from);

    std::optional<std::size_t> next();

private:
    void findKey(std::size_t key, std::size_t from);

    const BytePattern& pattern_;
    std::string_view text_;
    std::size_t end_ = 0;            // behind the last place where a key may stand
    std::vector<std::size_t> found_; // for each key byte, the next place of it; end_ when there is none
};

} // namespace genutil::text
