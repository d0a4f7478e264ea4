// Any bytes are a report to be printed, on any height of page. Every line is printed once, in its order,
// nothing that is printed commands a printer, and no line passes the width that the font is fitted to.

#include "fileview/print_lines.h"
#include "require.h"
#include "text/character_width.h"
#include "text/control_mark.h"
#include "text/utf8.h"

#include <cstdint>

using namespace genutil;

namespace {

void check(const PrintedLine& line, std::size_t mostColumns) {
    REQUIRE(text::columnsOf(line.text) <= mostColumns);
    for (std::size_t at = 0; at < line.text.size();) {
        const text::DecodedCharacter character = text::decodeUtf8(line.text, at);
        REQUIRE(text::controlMark(character.codePoint) == 0 && character.codePoint >= ' ');
        at += character.length;
    }
    for (const std::size_t mark : line.marks)
        REQUIRE(mark < line.text.size() && line.text[mark] > ' ' && line.text[mark] <= '~');
}

std::string withoutFeeds(std::string_view line) {
    std::string kept;
    for (const char c : line)
        if (c != '\f')
            kept += c;
    return kept;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const auto document =
        text::TextDocument::fromBytes(std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
    const PrintedLines lines = allLines(document);
    const std::size_t linesPerPage = data[0] % 8;
    const PagedLines pages(lines, linesPerPage);
    const std::size_t columns = text::columnsOf(widestLine(lines));

    std::string expected, printed;
    for (std::size_t i = lines.first; i < lines.end; ++i)
        expected += withoutFeeds(document.line(i));
    for (std::size_t page = 1; page <= pages.count(); ++page) {
        std::size_t onPage = 0;
        pages.forEachLine(page, [&](std::string_view line) {
            printed += line;
            check(printedLine(line), columns);
            ++onPage;
        });
        REQUIRE(onPage <= std::max<std::size_t>(linesPerPage, 1));
    }
    REQUIRE(printed == expected);
    return 0;
}
