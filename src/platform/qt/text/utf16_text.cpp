#include "platform/qt/text/utf16_text.h"

#include "text/utf8.h"

#include <algorithm>

namespace genutil {

Utf16Text::Utf16Text(std::string_view utf8) {
    text_.reserve(qsizetype(utf8.size()));
    bytes_.reserve(utf8.size() + 1);
    for (std::size_t at = 0; at < utf8.size();) {
        const auto character = text::decodeUtf8(utf8, at);
        for (const char16_t unit : QChar::fromUcs4(character.codePoint)) {
            text_.append(QChar(unit));
            bytes_.push_back(std::uint32_t(at));
        }
        at += character.length;
    }
    bytes_.push_back(std::uint32_t(utf8.size()));
}

std::size_t Utf16Text::byteOf(int unit) const {
    return bytes_[std::size_t(std::clamp(unit, 0, size()))];
}

int Utf16Text::unitOf(std::size_t byte) const {
    auto unit = std::ranges::lower_bound(bytes_, byte);
    if (unit == bytes_.end())
        return size();
    if (*unit > byte)
        unit = std::ranges::lower_bound(bytes_, *std::prev(unit));
    return int(unit - bytes_.begin());
}

} // namespace genutil
