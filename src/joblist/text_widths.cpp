#include "joblist/text_widths.h"

#include "text/utf8.h"

namespace genutil {

double textWidthUpTo(Desktop& desktop, const Font& font, const std::string& text, double enough) {
    for (std::size_t size = 512; size < text.size(); size *= 4) {
        std::size_t end = size;
        while (end > 0 && text::isContinuation(text[end]))
            --end;
        if (const double width = desktop.textWidth(font, text.substr(0, end)); width > enough)
            return width;
    }
    return desktop.textWidth(font, text);
}

} // namespace genutil
