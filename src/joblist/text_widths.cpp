#include "joblist/text_widths.h"

#include "text/utf8.h"

namespace genutil {

double TextWidths::of(const std::string& text, double enough) {
    constexpr std::size_t longText = 512; // bytes; a description can be a book
    for (std::size_t size = longText; size < text.size(); size *= 4) {
        std::size_t end = size;
        while (end > 0 && text::isContinuation(text[end]))
            --end;
        if (const double width = measured(std::string_view(text).substr(0, end)); width > enough)
            return width;
    }
    return measured(text);
}

double TextWidths::measured(std::string_view text) {
    std::string key(text);
    const auto known = known_.find(key);
    if (known != known_.end())
        return known->second;
    const double width = desktop_.textWidth(font_, key);
    known_.emplace(std::move(key), width);
    return width;
}

} // namespace genutil
