#pragma once

#include "fileview/print_lines.h"
#include "fileview/print_rules.h"

#include <cstddef>
#include <functional>
#include <limits>
#include <string>

namespace genutil {

// A report on its way to paper.
struct PrintOrder {
    PrintedLines lines;
    std::string header;
    Font font; // its size is the largest that the lines may get
    PageOrientation orientation = PageOrientation::Portrait;
    // Pages of the whole report, counted from 1, both printed. In the wrong order they are the same range.
    std::size_t fromPage = 1;
    std::size_t toPage = std::numeric_limits<std::size_t>::max();
    int copies = 1;
};

struct PrintOutcome {
    enum class End { Printed, Cancelled, BeyondLastPage };
    End end = End::Printed;
    std::size_t pageCount = 0; // of the whole report
    std::size_t fromPage = 1;  // as asked for
};

// Told how many pages of how many have been printed; False cancels.
using PrintProgress = std::function<bool(std::size_t done, std::size_t total)>;

// Prints the order with the printer as it is set. A page holds as many lines as fit below its header, so that
// the pages of a range are the sheets of the whole report. Nothing is printed when the printer fails, when
// it is cancelled, or when the range begins behind the last page.
PrintOutcome printReport(Printer& printer, const PrintOrder& order, const PrintProgress& goOn);

} // namespace genutil
