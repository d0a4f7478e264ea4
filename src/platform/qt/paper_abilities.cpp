#include "platform/qt/paper_abilities.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>
#include <array>
#include <cmath>

namespace genutil {
namespace {

constexpr double usualMargin = 12; // points that printers cannot print on, and a PDF file keeps free
constexpr QMarginsF usualMargins(usualMargin, usualMargin, usualMargin, usualMargin);
constexpr int firstOwnNumber = 256;
constexpr int lowestQuality = -4;

constexpr std::array pdfSizes{
    QPageSize::A5, QPageSize::A4, QPageSize::A3, QPageSize::Letter, QPageSize::Legal, QPageSize::Tabloid};

std::vector<PaperSize> sizesOf(const QPrinterInfo& info) {
    QList<QPageSize> sizes = info.supportedPageSizes();
    // "A4" before "A4.Borderless", which is as large: the number is the plain one's.
    std::ranges::stable_sort(sizes, {}, [](const QPageSize& size) { return size.key().size(); });
    QPrinter printer(info, QPrinter::HighResolution);
    std::vector<PaperSize> result;
    for (const QPageSize& size : sizes) {
        auto number = std::int16_t(size.windowsId());
        if (number <= 0 || std::ranges::count(result, number, &PaperSize::number) > 0)
            number = std::int16_t(firstOwnNumber + result.size());
        printer.setPageSize(size);
        result.push_back({number, size, printer.pageLayout().minimumMargins()});
    }
    return result;
}

// Which way the sheet is turned is the printer's: what either way leaves unprintable is kept free.
QMarginsF turned(const QMarginsF& upright) {
    const double sides = std::max(upright.top(), upright.bottom());
    const double ends = std::max(upright.left(), upright.right());
    return {sides, ends, sides, ends};
}

} // namespace

bool isPdf(const PrinterDevice& device) {
    return device.name == pdfDevice;
}

const PaperSize& PrinterAbilities::sizeOf(const PageSettings& settings) const {
    const auto find = [&](std::int16_t number) {
        return std::ranges::find(sizes, number, &PaperSize::number);
    };
    auto found = find(settings.paperSize);
    if (found == sizes.end())
        found = find(usualSize);
    return found == sizes.end() ? sizes.front() : *found;
}

PageSettings PrinterAbilities::possible(const PageSettings& settings) const {
    PageSettings kept = settings;
    kept.paperSize = sizeOf(settings).number;
    if (std::ranges::count(sources, settings.paperBin, &PaperSource::number) == 0)
        kept.paperBin = 0;
    if (!hasColor || settings.colorMode < 0 || settings.colorMode > 2)
        kept.colorMode = 0;
    if (!hasDuplex || settings.duplex < 0 || settings.duplex > 3)
        kept.duplex = 0;
    const bool isGrade = isPaper && settings.quality < 0 && settings.quality >= lowestQuality;
    if (!isGrade && std::ranges::count(resolutions, settings.quality) == 0)
        kept.quality = 0;
    return kept;
}

QPageLayout PrinterAbilities::layoutOf(const PageSettings& settings) const {
    const PaperSize& paper = sizeOf(settings);
    const bool lies = settings.orientation == PageOrientation::Landscape;
    return QPageLayout(paper.size, lies ? QPageLayout::Landscape : QPageLayout::Portrait,
        lies ? turned(paper.unprintable) : paper.unprintable, QPageLayout::Point);
}

JobOptions PrinterAbilities::jobOptions(const PageSettings& settings) const {
    // The copies are the run's, and every sheet is laid out to its edges.
    JobOptions options{
        {"copies", "1"}, {"print-scaling", "none"}, {"media", sizeOf(settings).size.key().toStdString()}};
    const auto source = std::ranges::find(sources, settings.paperBin, &PaperSource::number);
    if (source != sources.end())
        options["InputSlot"] = source->choice.toStdString();
    if (settings.colorMode > 0)
        options["print-color-mode"] = settings.colorMode == 1 ? "monochrome" : "color";
    if (settings.duplex > 0)
        options["sides"] = settings.duplex == 1   ? "one-sided"
                           : settings.duplex == 2 ? "two-sided-short-edge"
                                                  : "two-sided-long-edge";
    constexpr std::array grades{"3", "3", "4", "5"}; // draft, low, medium, high
    if (settings.quality > 0)
        options["printer-resolution"] = std::to_string(settings.quality) + "dpi";
    else if (settings.quality < 0)
        options["print-quality"] = grades.at(std::size_t(-settings.quality - 1));
    return options;
}

PrinterAbilities abilitiesOf(const PrinterDevice& device) {
    PrinterAbilities abilities;
    const QPrinterInfo info =
        isPdf(device) ? QPrinterInfo() : QPrinterInfo::printerInfo(QString::fromStdString(device.name));
    if (!info.isNull()) {
        abilities.sizes = sizesOf(info);
        abilities.sources = paperSources(info.printerName());
        abilities.isPaper = true;
        abilities.hasColor = info.supportedColorModes().contains(QPrinter::Color);
        abilities.hasDuplex = info.supportedDuplexModes().size() > 1;
        for (const int dots : info.supportedResolutions())
            if (dots > 0 && dots <= INT16_MAX)
                abilities.resolutions.push_back(dots);
        std::ranges::sort(abilities.resolutions);
        const auto usual = std::ranges::find(abilities.sizes, info.defaultPageSize().key(),
            [](const PaperSize& size) { return size.size.key(); });
        if (usual != abilities.sizes.end())
            abilities.usualSize = usual->number;
    }
    if (abilities.sizes.empty())
        for (const QPageSize::PageSizeId id : pdfSizes)
            abilities.sizes.push_back({std::int16_t(QPageSize::windowsId(id)), QPageSize(id), usualMargins});
    return abilities;
}

} // namespace genutil
