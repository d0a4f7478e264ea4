#pragma once

#include "hostif/printer.h"
#include "platform/qt/print/paper_queue.h"

#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>

#include <cstdint>
#include <vector>

namespace genutil {

struct PaperSize {
    std::int16_t number = 0; // that of printer drivers; from 256 on what only this printer has
    QPageSize size;
    QMarginsF unprintable; // points, of an upright sheet
};

struct PaperSource {
    std::int16_t number = 0; // as a paper size's
    DriverChoice choice;
};

struct PrintResolution {
    int dots = 0;     // per inch
    std::string name; // the driver's, or empty
};

// What a printer can do.
struct PrinterAbilities {
    std::vector<PaperSize> sizes; // never empty
    std::int16_t usualSize = PageSettings::a4;
    std::vector<PaperSource> sources;
    bool isPaper = false; // other than a file: its quality may be chosen
    bool hasColor = false;
    bool hasDuplex = false;
    std::vector<PrintResolution> resolutions; // rising
    std::string monochromeName;               // the driver's, or empty
    std::string colorName;

    // What the printer keeps of the settings: the usual size for one that it has not, 0 in place of others.
    PageSettings possible(const PageSettings& settings) const;
    QPageLayout layoutOf(const PageSettings& settings) const;
    JobOptions jobOptions(const PageSettings& settings) const;

private:
    const PaperSize& sizeOf(const PageSettings& settings) const;
};

// The PDF file among the printers.
inline constexpr const char* pdfDevice = "PDF file";
bool isPdf(const PrinterDevice& device);

// Of a printer that is not there any more, or does not answer: A4 and the usual margins.
PrinterAbilities abilitiesOf(const PrinterDevice& device);

} // namespace genutil
