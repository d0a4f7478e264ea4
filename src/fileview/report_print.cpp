#include "fileview/report_print.h"

#include "text/character_width.h"

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

// The lines that fit below a header and the blank line under it.
std::size_t linesBelowHeader(Printer& printer, const Margins& margins, std::size_t lines) {
    const Font report = printer.font();
    printer.setFont(headerFont(report));
    const double headerHeight = printer.textHeight("Test String");
    printer.setFont(report);
    const double blankLine = printer.textHeight("Test String");
    return pageDetails(printer, lines, margins.top + headerHeight + blankLine, bottomMargin).linesPerPage;
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
    layout.linesPerPage = linesBelowHeader(printer, layout.margins, report.lines.end - report.lines.first);
    return layout;
}

ReportPages::ReportPages(Printer& printer, const PrintedReport& report)
    : layout_(layOut(printer, report)), title_(report.title), header_(printedLine(report.header)),
      pages_(report.lines, layout_.linesPerPage) {}

void ReportPages::print(Printer& printer, std::size_t page) const {
    printer.setFont(headerFont(layout_.font));
    printer.setCurrent(layout_.margins.left, layout_.margins.top);
    printer.printLine(header_);
    printer.setFont(layout_.font);
    printer.setCurrent(layout_.margins.left, printer.currentY() + printer.textHeight(""));
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
    const std::size_t total = (to - from + 1) * std::size_t(std::max(range.copies, 1));

    printer.setTitle(pages.title());
    Document document(printer);
    for (std::size_t done = 0; done < total; ++done) {
        if (!goOn(done, total)) {
            outcome.end = PrintOutcome::End::Cancelled;
            return outcome;
        }
        if (done > 0)
            printer.newPage();
        pages.print(printer, from + done % (to - from + 1));
    }
    document.end();
    outcome.printed = total;
    return outcome;
}

} // namespace genutil
