#pragma once

#include "text/encoding.h"
#include "text/rtf_tokens.h"

#include <string>
#include <string_view>

namespace genutil::text::rtf {

// UTF-8 as a rich text may hold it: control characters but the tab are gone, as are marks for pictures; line
// and paragraph separators are U+2028; bytes and values that are no character are U+FFFD.
std::string cleanText(std::string_view utf8);

// Collects the characters between two changes of format, from bytes of a code page and from Unicode values.
class CharacterInput {
public:
    explicit CharacterInput(const CodePages& pages) : pages_(pages) {}

    // All bytes up to the next take() are of one code page.
    void bytes(std::string_view bytes, int codePage);
    void character(char32_t codePoint);
    // A value of \u: a UTF-16 unit, negative above 7FFF, or a whole code point.
    void unicode(int value, int codePage);

    // Whether the last byte waits for its second one.
    bool leadOpen() const { return leadOpen_; }

    bool isEmpty() const { return text_.empty() && bytes_.empty() && highSurrogate_ == 0; }
    std::string take();

private:
    void decode();
    void giveUpSurrogate();

    const CodePages& pages_;
    std::string text_;
    std::string bytes_; // not yet decoded
    int codePage_ = 0;  // of bytes_
    bool leadOpen_ = false;
    char32_t highSurrogate_ = 0; // waits for its low one
};

} // namespace genutil::text::rtf
