#include "fileview/report_print.h"

#include "text/character_width.h"
#include "text/utf8.h"

#include <algorithm>
#include <cmath>

namespace genutil {
namespace {

// Gives the document up unless it was ended.
class Document {
public:
    explicit Document(Printer& printer) : printer_(&printer) {}
    ~Document() {
        if (!printer_)
            return;
        try {
            printer_->cancelDocument();
        } catch (...) {
            // What went wrong first is what the user is told.
        }
    }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    void end() {
        printer_->endDocument();
        printer_ = nullptr;
    }

private:
    Printer* printer_;
};

// The header in lines of so many columns, parted behind a blank where one is in the second half of a line.
std::vector<PrintedLine> headerLines(std::string_view header, std::size_t columns) {
    std::vector<PrintedLine> lines;
    while (text::columnsOf(header) > columns) {
        std::size_t end = 0, blank = 0;
        while (end < header.size()) {
            std::size_t next = end + 1;
            while (next < header.size() && text::isContinuation(header[next]))
                ++next;
            if (end > 0 && text::columnsOf(header.substr(0, next)) > columns)
                break;
            if (header[end] == ' ' && end >= columns / 2)
                blank = next;
            end = next;
        }
        end = blank > 0 ? blank : end;
        lines.push_back(printedLine(header.substr(0, end)));
        header.remove_prefix(end);
    }
    lines.push_back(printedLine(header));
    return lines;
}

std::string cutOffText(const Printer& printer, const std::string& widest, double room) {
    if (printer.textWidth(widest) <= room)
        return {};
    const auto fitting = std::size_t(std::max(std::floor(room / printer.textWidth("x")), 0.0));
    return "Lines of more than " + std::to_string(fitting) +
           " characters are cut off at the paper's right edge; the longest has " +
           std::to_string(text::columnsOf(widest));
}

} // namespace

ReportPages::Layout ReportPages::layOut(Printer& printer, const PrintedReport& report) {
    printer.setFont(report.font);
    Layout layout;
    layout.margins = marginsOn(printer, report.orientation);
    // The room of a line begins at the left margin: what passes the right edge of the paper would be lost.
    const double room = printer.scaleWidth() - layout.margins.left;
    const std::string widest = widestLine(report.lines);
    shrinkToFit(printer, widest, room);
    layout.font = printer.font();
    layout.cutOff = cutOffText(printer, widest, room);
    layOutHeader(printer, report.header, room, layout);
    layout.linesPerPage = pageDetails(
        printer, report.lines.end - report.lines.first, layout.margins.top + layout.textTop, bottomMargin)
                              .linesPerPage;
    return layout;
}

// A header that is longer than a line goes on in the blank line below it, and further down where that is not
// enough.
void ReportPages::layOutHeader(Printer& printer, const std::string& header, double room, Layout& layout) {
    const double blankLine = printer.textHeight("Test String");
    printer.setFont(headerFont(layout.font));
    layout.headerHeight = printer.textHeight("Test String");
    const double columns = std::floor(room / printer.textWidth("x"));
    layout.header = headerLines(header, std::size_t(std::max(columns, 1.0)));
    printer.setFont(layout.font);
    const double further = layout.headerHeight * double(layout.header.size() - 1);
    layout.textTop = layout.headerHeight + std::max(blankLine, further);
}

ReportPages::ReportPages(Printer& printer, const PrintedReport& report)
    : layout_(layOut(printer, report)), title_(report.title), pages_(report.lines, layout_.linesPerPage) {}

void ReportPages::print(Printer& printer, std::size_t page) const {
    printer.setFont(headerFont(layout_.font));
    double top = layout_.margins.top;
    for (const PrintedLine& line : layout_.header) {
        printer.setCurrent(layout_.margins.left, top);
        printer.printLine(line);
        top += layout_.headerHeight;
    }
    printer.setFont(layout_.font);
    printer.setCurrent(layout_.margins.left, layout_.margins.top + layout_.textTop);
    pages_.forEachLine(page, [&](std::string_view line) {
        printer.setCurrent(layout_.margins.left, printer.currentY());
        printer.printLine(printedLine(line));
    });
}

std::string beyondLastPage(const PrintOutcome& outcome) {
    return "Nothing is printed: page " + std::to_string(outcome.fromPage) + " is beyond the last page, " +
           std::to_string(outcome.pageCount);
}

PrintOutcome printReport(
    Printer& printer, const ReportPages& pages, const PrintRange& range, const PrintProgress& goOn) {
    const auto [asked, last] = std::minmax(range.fromPage, range.toPage);
    const std::size_t from = std::max<std::size_t>(asked, 1);
    PrintOutcome outcome{.fromPage = from, .pageCount = pages.count()};
    if (from > pages.count()) {
        outcome.end = PrintOutcome::End::BeyondLastPage;
        return outcome;
    }
    const std::size_t to = std::min(last, pages.count());
    const std::size_t pagesOfCopy = to - from + 1;
    const std::size_t total = pagesOfCopy * std::size_t(std::max(range.copies, 1));
    // On both sides of the sheets, a copy of an odd number of pages leaves the back of its last one empty.
    const bool hasEmptyBack = printer.page().duplex > PageSettings::oneSide && pagesOfCopy % 2 != 0;

    printer.setTitle(pages.title());
    Document document(printer);
    for (std::size_t done = 0; done < total; ++done) {
        if (!goOn(done, total)) {
            outcome.end = PrintOutcome::End::Cancelled;
            return outcome;
        }
        if (done > 0)
            printer.newPage();
        if (done > 0 && hasEmptyBack && done % pagesOfCopy == 0)
            printer.newPage();
        pages.print(printer, from + done % pagesOfCopy);
    }
    document.end();
    outcome.printed = total;
    return outcome;
}

} // namespace genutil
