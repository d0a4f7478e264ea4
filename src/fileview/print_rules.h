#pragma once

#include "hostif/printer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What a report's name and the printer fix about a print run. Lengths are twips, sizes points.
namespace genutil {

// Summaries and extract files have long lines: they are printed in landscape.
bool isWideReport(std::string_view file);

PageOrientation orientationFor(bool wide);
// Courier New, bold.
Font reportFont(bool wide);
// What the header is printed in, in the face of the report.
Font headerFont(const Font& report);

inline constexpr double smallestFontSize = 5;
inline constexpr double bottomMargin = 276;

struct Margins {
    double left = 0;
    double top = 0;
    friend bool operator==(const Margins&, const Margins&) = default;
};

// From the edges of the sheet.
Margins wantedMargins(PageOrientation orientation);
// From the edges of the printable area, so that the text is as far from the sheet's edges as is wanted. An
// unprintable margin that takes all of the wanted one leaves that as it is.
Margins marginsOn(const Printer& printer, PageOrientation orientation);

// Turns the printer's orientation and looks whether that held. Errors mean that it did not.
bool takesOrientation(Printer& printer);
// Gives the printer the sheet that a report is printed on, A4. False for a printer that is not to be turned,
// and stays as it is.
bool setReportSheet(Printer& printer, bool wide);

struct PageDetails {
    std::size_t pageCount = 1;
    std::size_t linesPerPage = 1;
    friend bool operator==(const PageDetails&, const PageDetails&) = default;
};

// How many pages a text of that many lines takes in the printer's font, and how many lines a page does.
PageDetails pageDetails(const Printer& printer, std::size_t lines, double topMargin, double bottomMargin);
// The same for a printer that keeps its orientation to itself: by what an A4 sheet usually has.
PageDetails usualPageDetails(const Printer& printer, std::size_t lines, PageOrientation orientation);

// The printer's font in steps of 0.2 points down until the text fits the room, or the font has its smallest
// size.
void shrinkToFit(Printer& printer, const std::string& widestText, double room);

// The line at the head of every page. Dates are days since 30 December 1899, in the user's time.
std::string pageHeader(
    const std::string& version, const std::string& file, double fileDate, double printDate);

} // namespace genutil
