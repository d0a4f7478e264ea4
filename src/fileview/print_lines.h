#pragma once

#include "hostif/printer.h"
#include "text/text_document.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

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

// What goes over pages one after another.
class PageVisitor {
public:
    virtual ~PageVisitor() = default;
    // The next page, counted from 1. False ends the walk.
    virtual bool page(std::size_t number) = 0;
    // A line, or what a form feed leaves of it.
    virtual void line(std::string_view line) = 0;
};

// A page is begun by the first line, by the first one that finds `linesPerPage` lines on the page, and by
// every form feed that something follows, but by none at the very start.
void walkPages(const PrintedLines& lines, std::size_t linesPerPage, PageVisitor& visitor);

std::size_t countPages(const PrintedLines& lines, std::size_t linesPerPage);

// What decides about the size of the font.
struct LineSurvey {
    std::string widest; // as it is printed
    bool hasFormFeeds = false;
};
LineSurvey survey(const PrintedLines& lines);

} // namespace genutil
