#include "text/rtf_pictures.h"

#include "text/rtf_tokens.h"

#include <algorithm>
#include <utility>

namespace genutil::text::rtf {

namespace {

int shownSide(int twips, int percent) {
    const long long side = static_cast<long long>(std::max(twips, 0)) * std::max(percent, 0) / 100;
    return static_cast<int>(std::min<long long>(side, longestLength));
}

} // namespace

void PictureInput::addHex(std::string_view digits) {
    for (const char digit : digits) {
        const int value = hexValue(digit);
        if (value < 0)
            continue;
        if (halfByte_ >= 0)
            bytes_ += static_cast<char>(std::exchange(halfByte_, -1) * 16 + value);
        else
            halfByte_ = value;
    }
}

std::optional<Picture> PictureInput::finish() {
    if (!kind_ || bytes_.empty())
        return std::nullopt;
    return Picture{*kind_, std::move(bytes_), shownSide(width_, scaleX_), shownSide(height_, scaleY_)};
}

} // namespace genutil::text::rtf
