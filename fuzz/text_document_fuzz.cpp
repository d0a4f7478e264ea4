// Any bytes are a report: they must become lines that a view can show. Checked against what the lines
// themselves say.

#include "text/character_width.h"
#include "text/text_document.h"
#include "text/utf8.h"

#include <cstdint>
#include <cstdlib>

using namespace genutil::text;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto document = TextDocument::fromBytes(std::string(reinterpret_cast<const char*>(data), size));
    WidestLine widest;
    for (std::size_t i = 0; i < document.lineCount(); ++i) {
        const std::string_view line = document.line(i);
        if (line.find_first_of("\r\n") != std::string_view::npos)
            std::abort();
        const std::size_t columns = columnsOf(line);
        if (columns > widest.columns)
            widest = {i, columns};
        if (document.encoding() != Encoding::Utf8WithMark && !isValidUtf8(line))
            std::abort();
    }
    if (document.widestLine().index != widest.index || document.widestLine().columns != widest.columns)
        std::abort();
    return 0;
}
