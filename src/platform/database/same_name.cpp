#include "platform/database/same_name.h"

#include "text/letters.h"
#include "text/utf8.h"

namespace genutil {

bool isSameName(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t j = 0;
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : int{c}; };
    while (i < a.size() && j < b.size()) {
        if (isAscii(a[i]) && isAscii(b[j])) { // nearly all; without a call
            if (lower(a[i++]) != lower(b[j++]))
                return false;
            continue;
        }
        const text::DecodedCharacter left = text::decodeUtf8(a, i);
        const text::DecodedCharacter right = text::decodeUtf8(b, j);
        if (text::foldCase(left.codePoint) != text::foldCase(right.codePoint))
            return false;
        i += left.length;
        j += right.length;
    }
    return i == a.size() && j == b.size();
}

} // namespace genutil
