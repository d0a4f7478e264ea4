#include "platform/qt/print/paper_abilities.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>
#include <array>
#include <string_view>

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

bool isGrade(int quality) {
    return quality < 0 && quality >= lowestQuality;
}

struct KnownSource {
    std::string_view choice;
    std::int16_t number;
};
constexpr std::array knownSources{
    KnownSource{"Upper", 1},
    KnownSource{"Lower", 2},
    KnownSource{"Middle", 3},
    KnownSource{"Manual", 4},
    KnownSource{"ManualFeed", 4},
    KnownSource{"Envelope", 5},
    KnownSource{"EnvelopeManual", 6},
    KnownSource{"Auto", 7},
    KnownSource{"AutoSelect", 7},
    KnownSource{"Automatic", 7},
    KnownSource{"Tractor", 8},
    KnownSource{"SmallFormat", 9},
    KnownSource{"LargeFormat", 10},
    KnownSource{"LargeCapacity", 11},
    KnownSource{"Cassette", 14},
    KnownSource{"FormSource", 15},
};

std::vector<PaperSource> sourcesOf(const std::vector<DriverChoice>& choices) {
    std::vector<PaperSource> sources;
    for (const DriverChoice& choice : choices) {
        const auto known = std::ranges::find(knownSources, choice.name, &KnownSource::choice);
        const bool isOwn = known == knownSources.end() ||
                           std::ranges::count(sources, known->number, &PaperSource::number) > 0;
        sources.push_back({isOwn ? std::int16_t(firstOwnNumber + sources.size()) : known->number, choice});
    }
    return sources;
}

// The first of the wanted names that the driver's begin with.
std::string nameAmong(const std::vector<DriverChoice>& choices, const std::vector<std::string>& wanted) {
    for (const std::string& name : wanted)
        for (const DriverChoice& choice : choices)
            if (choice.name.starts_with(name))
                return choice.name;
    return {};
}

std::vector<PrintResolution> resolutionsOf(
    const QPrinterInfo& info, const std::vector<DriverChoice>& choices) {
    std::vector<PrintResolution> resolutions;
    for (const int dots : info.supportedResolutions()) {
        const std::string number = std::to_string(dots);
        if (dots > 0 && dots <= INT16_MAX)
            resolutions.push_back({dots, nameAmong(choices, {number + "dpi", number + "x" + number})});
    }
    std::ranges::sort(resolutions, {}, &PrintResolution::dots);
    return resolutions;
}

// A printer may turn a landscape sheet either way, so the unprintable margins of both ways are kept free.
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
    const bool hasGrade = isPaper && isGrade(settings.quality);
    if (!hasGrade && std::ranges::count(resolutions, settings.quality, &PrintResolution::dots) == 0)
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
        options["InputSlot"] = source->choice.name;
    const auto add = [&](const char* name, const std::string& value) {
        if (!value.empty())
            options[name] = value;
    };
    // A driver is told by its own name, too: not all are found by the general one.
    if (settings.colorMode > 0) {
        add("print-color-mode", settings.colorMode == 1 ? "monochrome" : "color");
        add("ColorModel", settings.colorMode == 1 ? monochromeName : colorName);
    }
    if (settings.duplex > 0)
        options["sides"] = settings.duplex == 1   ? "one-sided"
                           : settings.duplex == 2 ? "two-sided-short-edge"
                                                  : "two-sided-long-edge";
    constexpr std::array grades{"3", "3", "4", "5"}; // draft, low, medium, high
    const auto resolution = std::ranges::find(resolutions, settings.quality, &PrintResolution::dots);
    if (resolution != resolutions.end()) {
        add("printer-resolution", std::to_string(resolution->dots) + "dpi");
        add("Resolution", resolution->name);
    }
    if (isGrade(settings.quality))
        options["print-quality"] = grades.at(std::size_t(-settings.quality - 1));
    return options;
}

PrinterAbilities abilitiesOf(const PrinterDevice& device) {
    PrinterAbilities abilities;
    const QPrinterInfo info = isPdf(device) || !schedulerAnswers()
                                  ? QPrinterInfo()
                                  : QPrinterInfo::printerInfo(QString::fromStdString(device.name));
    if (!info.isNull()) {
        abilities.sizes = sizesOf(info);
        DriverChoices choices = driverChoices(info.printerName());
        abilities.sources = sourcesOf(choices["InputSlot"]);
        abilities.isPaper = true;
        abilities.hasColor = info.supportedColorModes().contains(QPrinter::Color);
        abilities.hasDuplex = info.supportedDuplexModes().size() > 1;
        abilities.resolutions = resolutionsOf(info, choices["Resolution"]);
        abilities.monochromeName = nameAmong(choices["ColorModel"], {"Gray", "KGray", "Black", "Mono"});
        abilities.colorName = nameAmong(choices["ColorModel"], {"RGB", "CMY", "Color"});
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
