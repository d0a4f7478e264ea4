#pragma once

#include "hostif/printer.h"
#include "text/text_document.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// How the lines of a text fall on pages.
namespace genutil {

// The line with its characters on the columns of the viewer.
PrintedLine printedLine(std::string_view line);

// Lines of a text, counted from 0. What follows a last line end is no line.
struct PrintedLines {
    const text::TextDocument* text = nullptr;
    std::size_t first = 0;
    std::size_t end = 0;
};
PrintedLines allLines(const text::TextDocument& document);

// Where the lines fall. A page is begun by the first line, by the first one that finds `linesPerPage` lines
// on the page, and by every form feed that something follows, but by none at the very start. A text without a
// line has one empty page.
class PagedLines {
public:
    PagedLines(const PrintedLines& lines, std::size_t linesPerPage);

    std::size_t count() const { return count_; }
    // The lines of a page, counted from 1, or what form feeds leave of them.
    void forEachLine(std::size_t page, const std::function<void(std::string_view line)>& act) const;

private:
    // A page that holds something. Those that only form feeds made are not kept.
    struct Start {
        std::size_t page;
        std::size_t line;
        std::size_t byte; // of the line
    };
    void put(std::size_t line, std::size_t byte, std::size_t pagesAhead);

    PrintedLines lines_;
    std::vector<Start> starts_;
    std::size_t count_ = 1;
};

bool hasFormFeeds(const PrintedLines& lines);

// What decides about the size of the font, as it is printed.
std::string widestLine(const PrintedLines& lines);

} // namespace genutil
