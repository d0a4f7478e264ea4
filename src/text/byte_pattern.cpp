#include "text/byte_pattern.h"

#include "text/letters.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace genutil::text {

namespace {

// All characters that have another case lie below.
constexpr char32_t endOfCases = 0x0530;

std::vector<std::string> formsOf(std::string_view bytes, const DecodedCharacter& character, bool matchCase) {
    std::vector<std::string> forms{std::string(bytes)};
    if (matchCase || !character.valid || character.codePoint >= endOfCases)
        return forms;
    const char32_t folded = foldCase(character.codePoint);
    for (char32_t other = 0; other < endOfCases; ++other)
        if (other != character.codePoint && foldCase(other) == folded)
            appendUtf8(forms.emplace_back(), other);
    return forms;
}

} // namespace

BytePattern::BytePattern(std::string_view word, bool matchCase, std::string_view sample)
    : size_(word.size()) {
    for (std::size_t at = 0; at < size_;) {
        const DecodedCharacter character = decodeUtf8(word, at);
        places_.push_back({at, formsOf(word.substr(at, character.length), character, matchCase)});
        at += character.length;
    }
    chooseKey(sample);
}

void BytePattern::chooseKey(std::string_view sample) {
    std::array<std::size_t, 256> counts{};
    for (const char byte : sample)
        ++counts[static_cast<unsigned char>(byte)];

    std::optional<std::size_t> fewest;
    for (const Place& place : places_) {
        for (std::size_t i = 0; i < place.forms[0].size(); ++i) {
            std::string bytes;
            std::size_t count = 0;
            for (const std::string& form : place.forms) {
                if (bytes.find(form[i]) != std::string::npos)
                    continue;
                bytes += form[i];
                count += 1 + counts[static_cast<unsigned char>(form[i])];
            }
            if (!fewest || count < *fewest) {
                fewest = count;
                keyOffset_ = place.offset + i;
                keyBytes_ = bytes;
            }
        }
    }
}

bool BytePattern::matchesAt(const char* text) const {
    return std::ranges::all_of(places_, [text](const Place& place) {
        return std::ranges::any_of(place.forms, [&](const std::string& form) {
            return std::memcmp(text + place.offset, form.data(), form.size()) == 0;
        });
    });
}

PatternMatches::PatternMatches(const BytePattern& pattern, std::string_view text, std::size_t from)
    : pattern_(pattern), text_(text), found_(pattern.keyBytes_.size()) {
    if (text.size() >= pattern.size_)
        end_ = text.size() - pattern.size_ + pattern.keyOffset_ + 1;
    for (std::size_t key = 0; key < found_.size(); ++key)
        findKey(key, from + pattern.keyOffset_);
}

void PatternMatches::findKey(std::size_t key, std::size_t from) {
    const void* found = nullptr;
    if (from < end_)
        found = std::memchr(text_.data() + from, pattern_.keyBytes_[key], end_ - from);
    found_[key] = found != nullptr ? std::size_t(static_cast<const char*>(found) - text_.data()) : end_;
}

std::optional<std::size_t> PatternMatches::next() {
    for (;;) {
        const auto nearest = std::ranges::min_element(found_);
        const std::size_t place = *nearest;
        if (place == end_)
            return std::nullopt;
        findKey(std::size_t(nearest - found_.begin()), place + 1);
        const std::size_t begin = place - pattern_.keyOffset_;
        if (pattern_.matchesAt(text_.data() + begin))
            return begin;
    }
}

} // namespace genutil::text
