#include "fileview/print_lines.h"

#include "text/character_width.h"
#include "text/control_mark.h"
#include "text/line_index.h"
#include "text/utf8.h"

#include <algorithm>
#include <utility>

namespace genutil {
namespace {

constexpr char formFeed = '\f';

// The pieces of a line between its form feeds, each with the byte it begins at. What a form feed leaves empty
// is no piece.
template<class Act>
void forEachPiece(std::string_view line, const Act& act) {
    if (line.find(formFeed) == std::string_view::npos) {
        act(line, std::size_t(0));
        return;
    }
    for (std::size_t begin = 0; begin < line.size();) {
        const std::size_t end = std::min(line.find(formFeed, begin), line.size());
        if (end > begin)
            act(line.substr(begin, end - begin), begin);
        begin = end + 1;
    }
}

} // namespace

PrintedLine printedLine(std::string_view line) {
    PrintedLine printed;
    printed.text.reserve(line.size());
    std::size_t column = 0;
    for (std::size_t at = 0; at < line.size();) {
        if (line[at] == '\t') {
            const std::size_t next = (column / text::tabStop + 1) * text::tabStop;
            printed.text.append(next - column, ' ');
            column = next;
            ++at;
            continue;
        }
        const text::DecodedCharacter character = text::decodeUtf8(line, at);
        at += character.length;
        if (const char sign = text::controlMark(character.codePoint)) {
            printed.marks.push_back(printed.text.size());
            printed.text += sign;
            ++column;
        } else {
            text::appendUtf8(printed.text, character.codePoint);
            column += std::size_t(text::characterWidth(character.codePoint));
        }
    }
    return printed;
}

PrintedLines allLines(const text::TextDocument& document) {
    const std::size_t count = document.lineCount();
    return {&document, 0, document.line(count - 1).empty() ? count - 1 : count};
}

PagedLines::PagedLines(const PrintedLines& lines, std::size_t linesPerPage) : lines_(lines) {
    std::size_t linesOnPage = 0;
    std::size_t feeds = 0; // since the last piece
    for (std::size_t i = lines.first; i < lines.end; ++i) {
        const std::string_view line = lines.text->line(i);
        std::size_t end = 0; // of the last piece; form feeds are all that lies between two
        forEachPiece(line, [&](std::string_view piece, std::size_t byte) {
            feeds += byte - std::exchange(end, byte + piece.size());
            if (starts_.empty()) {
                starts_.push_back({1, i, byte});
            } else if (feeds > 0 || linesOnPage >= linesPerPage) {
                count_ += std::max<std::size_t>(feeds, 1);
                starts_.push_back({count_, i, byte});
                linesOnPage = 0;
            }
            feeds = 0;
            ++linesOnPage;
        });
        feeds += line.size() - end;
    }
}

void PagedLines::forEachLine(std::size_t page, const std::function<void(std::string_view)>& act) const {
    const auto start = std::ranges::lower_bound(starts_, page, {}, &Start::page);
    if (start == starts_.end() || start->page != page)
        return;
    const Start next = start + 1 == starts_.end() ? Start{0, lines_.end, 0} : *(start + 1);
    const std::size_t end = next.byte > 0 ? next.line + 1 : next.line;
    for (std::size_t i = start->line; i < end; ++i) {
        const std::size_t from = i == start->line ? start->byte : 0;
        const std::size_t to = i == next.line ? next.byte : std::string_view::npos;
        forEachPiece(lines_.text->line(i).substr(from, to - from),
            [&](std::string_view piece, std::size_t) { act(piece); });
    }
}

bool hasFormFeeds(const PrintedLines& lines) {
    for (std::size_t i = lines.first; i < lines.end; ++i)
        if (lines.text->line(i).find(formFeed) != std::string_view::npos)
            return true;
    return false;
}

std::string widestLine(const PrintedLines& lines) {
    // A whole text knows it, but for what form feeds make of its lines.
    const text::WidestLine known = lines.text->widestLine();
    if (known.index >= lines.first && known.index < lines.end) {
        const std::string_view line = lines.text->line(known.index);
        if (line.find(formFeed) == std::string_view::npos && text::columnsOf(line) == known.columns)
            return printedLine(line).text;
    }
    std::string widest;
    std::size_t columns = 0;
    const auto look = [&](std::string_view piece, std::size_t) {
        if (!text::mayTakeMoreColumns(piece, columns))
            return;
        if (const std::size_t taken = text::columnsOf(piece); taken > columns) {
            columns = taken;
            widest = piece;
        }
    };
    for (std::size_t i = lines.first; i < lines.end; ++i)
        forEachPiece(lines.text->line(i), look);
    return printedLine(widest).text;
}

} // namespace genutil
