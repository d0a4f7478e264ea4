#pragma once

#include "fileview/report_print.h"
#include "frame/loader.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace genutil {

// What of a report goes into a PDF file.
struct PdfOrder {
    std::string file = {}; // full path
    std::string pdfFile = {};
    std::optional<PageOrientation> orientation = {}; // else by the report's name
    // Lines and pages are counted from 1, the first and the last one are printed, and in the wrong order they
    // are the same range. The pages are those that the lines make.
    std::size_t fromLine = 1;
    std::size_t toLine = std::numeric_limits<std::size_t>::max();
    PrintRange range = {};
};

// Prints reports without the viewer and without asking.
class ReportPrinting : public LoaderBase {
public:
    explicit ReportPrinting(Component& component) : LoaderBase(component, "cFileViewLoader") {}

    struct Printed {
        std::size_t pages = 0;
        std::string cutOff; // what the paper's right edge has cut off, or nothing
    };
    // Writes the PDF file, whole or not at all. A range that holds nothing is refused with InvalidCall.
    Printed PrintToPdf(const PdfOrder& order, const RecordPtr& prog);
};

// Throws when the PDF file would take the report's own place.
void checkPdfTarget(FileSystem& files, const std::string& report, const std::string& pdfFile);
// A printer that writes the PDF file, with A4 paper in the orientation asked for.
std::unique_ptr<Printer> pdfPrinterFor(
    Desktop& desktop, const std::string& pdfFile, PageOrientation orientation);

} // namespace genutil
