#include "fileview/print_lines.h"

#include "text/character_width.h"
#include "text/control_mark.h"
#include "text/line_index.h"
#include "text/utf8.h"

#include <algorithm>

namespace genutil {
namespace {

constexpr char formFeed = '\f';

// The pieces of a line between its form feeds.
template<class Act>
void forEachPiece(std::string_view line, const Act& act) {
    for (std::size_t begin = 0; begin <= line.size();) {
        const std::size_t end = std::min(line.find(formFeed, begin), line.size());
        act(line.substr(begin, end - begin), begin > 0);
        begin = end + 1;
    }
}

struct PageCounter : PageVisitor {
    std::size_t pages = 0;
    bool page(std::size_t number) override {
        pages = number;
        return true;
    }
    void line(std::string_view) override {}
};

// Where a walk stands. Pages are begun late, by what is put on them, so that none is left empty at the end.
class Walk {
public:
    Walk(std::size_t linesPerPage, PageVisitor& visitor)
        : linesPerPage_(std::max<std::size_t>(linesPerPage, 1)), visitor_(visitor) {}

    // False once the visitor has had enough.
    bool line(std::string_view line) {
        if (linesOnPage_ == linesPerPage_ && pagesAhead_ == 0)
            pagesAhead_ = 1;
        if (!beginPages())
            return false;
        visitor_.line(line);
        ++linesOnPage_;
        return true;
    }
    void feed() {
        if (page_ > 0)
            ++pagesAhead_;
    }
    bool beginPages() {
        for (pagesAhead_ = page_ == 0 ? 1 : pagesAhead_; pagesAhead_ > 0; --pagesAhead_) {
            linesOnPage_ = 0;
            if (!visitor_.page(++page_))
                return false;
        }
        return true;
    }

private:
    std::size_t linesPerPage_;
    PageVisitor& visitor_;
    std::size_t page_ = 0;
    std::size_t linesOnPage_ = 0;
    std::size_t pagesAhead_ = 0;
};

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

void walkPages(const PrintedLines& lines, std::size_t linesPerPage, PageVisitor& visitor) {
    Walk walk(linesPerPage, visitor);
    bool goOn = true;
    for (std::size_t i = lines.first; i < lines.end && goOn; ++i) {
        const std::string_view line = lines.text->line(i);
        const bool hasFeeds = line.find(formFeed) != std::string_view::npos;
        forEachPiece(line, [&](std::string_view piece, bool behindFeed) {
            if (!goOn)
                return;
            if (behindFeed)
                walk.feed();
            // What a form feed leaves empty is no line of its own.
            if (!hasFeeds || !piece.empty())
                goOn = walk.line(piece);
        });
    }
    if (lines.first >= lines.end)
        walk.beginPages();
}

std::size_t countPages(const PrintedLines& lines, std::size_t linesPerPage) {
    PageCounter counter;
    walkPages(lines, linesPerPage, counter);
    return counter.pages;
}

LineSurvey survey(const PrintedLines& lines) {
    std::size_t columns = 0;
    LineSurvey result;
    for (std::size_t i = lines.first; i < lines.end; ++i) {
        forEachPiece(lines.text->line(i), [&](std::string_view piece, bool behindFeed) {
            result.hasFormFeeds = result.hasFormFeeds || behindFeed;
            if (!text::mayTakeMoreColumns(piece, columns))
                return;
            if (const std::size_t taken = text::columnsOf(piece); taken > columns) {
                columns = taken;
                result.widest = printedLine(piece).text;
            }
        });
    }
    return result;
}

} // namespace genutil
