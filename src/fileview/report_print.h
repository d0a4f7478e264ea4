#pragma once

#include "fileview/print_lines.h"
#include "fileview/print_rules.h"

#include <cstddef>
#include <functional>
#include <limits>
#include <string>

namespace genutil {

// What is printed of a report, and how.
struct PrintedReport {
    PrintedLines lines;
    std::string header;
    Font font; // its size is the largest that the lines may get
    PageOrientation orientation = PageOrientation::Portrait;
    std::string title = "Report"; // of the document
};

// A report laid out for a printer as it is set, which leaves its font on the printer. A page holds as many
// lines as fit below its header, so that the pages of a range are the sheets of the whole report.
class ReportPages {
public:
    ReportPages(Printer& printer, const PrintedReport& report);

    std::size_t count() const { return pages_.count(); }
    const std::string& title() const { return title_; }
    // What the paper's right edge cuts off, or nothing.
    const std::string& cutOff() const { return layout_.cutOff; }
    // Prints a page, counted from 1, on the printer's page.
    void print(Printer& printer, std::size_t page) const;

private:
    struct Layout {
        Margins margins;
        Font font;
        std::vector<PrintedLine> header;
        double headerHeight = 0; // of one line of it
        double textTop = 0;      // from the top margin to the first line of the report
        std::size_t linesPerPage = 1;
        std::string cutOff;
    };
    static Layout layOut(Printer& printer, const PrintedReport& report);
    static void layOutHeader(Printer& printer, const std::string& header, double room, Layout& layout);

    Layout layout_;
    std::string title_;
    PagedLines pages_;
};

struct PrintRange {
    // Both are printed. In the wrong order they are the same range.
    std::size_t fromPage = 1;
    std::size_t toPage = std::numeric_limits<std::size_t>::max();
    int copies = 1;
};

struct PrintOutcome {
    enum class End { Printed, Cancelled, BeyondLastPage };
    End end = End::Printed;
    std::size_t fromPage = 1;  // as asked for
    std::size_t pageCount = 0; // of the whole report
    std::size_t printed = 0;   // pages, of all copies
};
// Why nothing was printed of a range behind the last page.
std::string beyondLastPage(const PrintOutcome& outcome);

// Told how many pages of how many have been printed; False cancels.
using PrintProgress = std::function<bool(std::size_t done, std::size_t total)>;

// Prints a range with the printer that the pages were laid out for, one whole copy after another, each
// beginning on a sheet of its own. Nothing is printed when the printer fails, when it is cancelled, or when
// the range begins behind the last page.
PrintOutcome printReport(
    Printer& printer, const ReportPages& pages, const PrintRange& range, const PrintProgress& goOn);

} // namespace genutil
