#include "fileview/report_printing.h"

#include "fileview/printed_file.h"

#include <algorithm>

namespace genutil {
namespace {

PrintedLines linesOf(const text::TextDocument& document, const PdfOrder& order) {
    PrintedLines lines = allLines(document);
    const auto [from, to] = std::minmax(order.fromLine, order.toLine);
    if (from > std::max<std::size_t>(lines.end, 1))
        throw Error(errors::InvalidCall, "Nothing is printed: line " + std::to_string(from) +
                                             " is beyond the last line, " + std::to_string(lines.end));
    lines.first = from > 0 ? from - 1 : 0;
    lines.end = std::min(to, lines.end);
    return lines;
}

} // namespace

void checkPdfTarget(FileSystem& files, const std::string& report, const std::string& pdfFile) {
    const auto target = files.stampOf(pdfFile);
    const auto own = files.stampOf(report);
    if (target && own && target->device == own->device && target->file == own->file)
        throw Error(errors::FileExists, "'" + pdfFile + "' is the report itself");
}

std::unique_ptr<Printer> pdfPrinterFor(
    Desktop& desktop, const std::string& pdfFile, PageOrientation orientation) {
    auto printer = desktop.pdfPrinter(pdfFile);
    if (!printer)
        throw Error(errors::DeviceError, "PDF files cannot be written on this desktop");
    printer->setPage({.orientation = orientation});
    return printer;
}

ReportPrinting::Printed ReportPrinting::PrintToPdf(const PdfOrder& order, const RecordPtr& prog) {
    return run(
        "PrintToPdf",
        [&] {
            required(prog, "the program object of a printed report");
            if (isRichText(order.file))
                throw Error(errors::InvalidCall, "'" + order.file + "': " + richTextIsNotPrinted);
            checkPdfTarget(component().files(), order.file, order.pdfFile);
            const PageOrientation orientation =
                order.orientation.value_or(orientationFor(isWideReport(order.file)));
            const text::TextDocument document = readReport(component().files(), order.file);
            const auto fileProcs = component().objects().createFileProcedures();
            const auto printer = pdfPrinterFor(component().desktop(), order.pdfFile, orientation);
            const ReportPages pages(*printer, printedReport(component(), prog, *fileProcs, order.file,
                                                  linesOf(document, order), orientation));
            const PrintOutcome outcome =
                printReport(*printer, pages, order.range, [](std::size_t, std::size_t) { return true; });
            if (outcome.end == PrintOutcome::End::BeyondLastPage)
                throw Error(errors::InvalidCall, beyondLastPage(outcome));
            return Printed{outcome.printed, pages.cutOff()};
        },
        "Function");
}

} // namespace genutil
