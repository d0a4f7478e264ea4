#include "fileview/report_print.h"

#include <algorithm>
#include <cmath>
#include <utility>

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
    void end() { std::exchange(printer_, nullptr)->endDocument(); }

private:
    Printer* printer_;
};

struct Layout {
    Margins margins;
    Font font;
    std::size_t linesPerPage = 1;
};

// One copy of the pages of a range.
class Copy : public PageVisitor {
public:
    Copy(Printer& printer, const Layout& layout, const PrintedLine& header, std::size_t from, std::size_t to,
        std::function<bool()> beginPage)
        : printer_(printer), layout_(layout), header_(header), from_(from), to_(to),
          beginPage_(std::move(beginPage)) {}

    bool page(std::size_t number) override {
        if (number > to_)
            return false;
        printing_ = number >= from_;
        if (!printing_)
            return true;
        if (!beginPage_())
            return false;
        printHeader();
        return true;
    }
    void line(std::string_view line) override {
        if (!printing_)
            return;
        printer_.setCurrent(layout_.margins.left, printer_.currentY());
        printer_.printLine(printedLine(line));
    }

private:
    void printHeader() {
        printer_.setFont(headerFont(layout_.font));
        printer_.setCurrent(layout_.margins.left, layout_.margins.top);
        printer_.printLine(header_);
        printer_.setFont(layout_.font);
        printer_.setCurrent(layout_.margins.left, printer_.currentY() + printer_.textHeight(""));
    }

    Printer& printer_;
    const Layout& layout_;
    const PrintedLine& header_;
    std::size_t from_;
    std::size_t to_;
    std::function<bool()> beginPage_;
    bool printing_ = false;
};

// The lines that fit below a header and the blank line under it, at most those of the page without them.
std::size_t linesBelowHeader(Printer& printer, const Margins& margins, std::size_t lines) {
    const Font report = printer.font();
    printer.setFont(headerFont(report));
    const double headerHeight = printer.textHeight("Test String");
    printer.setFont(report);
    const double lineHeight = printer.textHeight("Test String");
    const double blankLine = lineHeight;
    const std::size_t fitting =
        pageDetails(printer, lines, margins.top + headerHeight + blankLine, bottomMargin).linesPerPage;
    return std::min(fitting, pageDetails(printer, lines, margins.top, bottomMargin).linesPerPage);
}

Layout layOut(Printer& printer, const PrintOrder& order) {
    printer.setFont(order.font);
    Layout layout;
    layout.margins = marginsOn(printer, order.orientation);
    shrinkToFit(printer, survey(order.lines).widest, printer.scaleWidth() - layout.margins.left);
    layout.font = printer.font();
    layout.linesPerPage = linesBelowHeader(printer, layout.margins, order.lines.end - order.lines.first);
    return layout;
}

} // namespace

PrintOutcome printReport(Printer& printer, const PrintOrder& order, const PrintProgress& goOn) {
    const Layout layout = layOut(printer, order);
    const auto [asked, last] = std::minmax(order.fromPage, order.toPage);
    const std::size_t from = std::max<std::size_t>(asked, 1);
    PrintOutcome outcome{.pageCount = countPages(order.lines, layout.linesPerPage), .fromPage = from};
    if (from > outcome.pageCount) {
        outcome.end = PrintOutcome::End::BeyondLastPage;
        return outcome;
    }
    const std::size_t to = std::min(last, outcome.pageCount);
    const std::size_t total = (to - from + 1) * std::size_t(std::max(order.copies, 1));
    const PrintedLine header = printedLine(order.header);

    Document document(printer);
    std::size_t done = 0;
    for (bool cancelled = false; done < total;) {
        printer.setFont(layout.font);
        Copy copy(printer, layout, header, from, to, [&] {
            cancelled = !goOn(done, total);
            if (cancelled)
                return false;
            if (done++ > 0)
                printer.newPage();
            return true;
        });
        walkPages(order.lines, layout.linesPerPage, copy);
        if (cancelled) {
            outcome.end = PrintOutcome::End::Cancelled;
            return outcome;
        }
    }
    document.end();
    return outcome;
}

} // namespace genutil
