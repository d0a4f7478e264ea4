#include "fileview/print_rules.h"

#include "hostif/date.h"
#include "text/ascii.h"
#include "text/letters.h"

#include <algorithm>
#include <cmath>

namespace genutil {
namespace {

constexpr double twipsPerInch = 1440;
constexpr int tenths = 10;
constexpr int tenthsPerStep = 2;

// Where the printable area of an A4 sheet is not to be had from the printer: inches.
constexpr double usualHeightPortrait = 11.15;
constexpr double usualHeightLandscape = 7.68;

double marginBehind(double wanted, double offset) {
    return offset >= 1 && offset < wanted ? wanted - offset : wanted;
}

std::size_t atLeastOne(double count) {
    constexpr double most = 1e15;
    return count >= 1 ? std::size_t(std::min(count, most)) : 1;
}

} // namespace

bool isWideReport(std::string_view file) {
    return text::endsWithIgnoringCase(file, ".SUM") || file.find(".&") != std::string_view::npos;
}

PageOrientation orientationFor(bool wide) {
    return wide ? PageOrientation::Landscape : PageOrientation::Portrait;
}

Font reportFont(bool wide) {
    return {.name = "Courier New", .size = wide ? 9.4 : 9.6, .bold = true};
}

Font headerFont(const Font& report) {
    return {.name = report.name, .size = 5, .bold = false};
}

Margins wantedMargins(PageOrientation orientation) {
    constexpr Margins portrait{.left = 827, .top = 276};
    constexpr Margins landscape{.left = 551, .top = 827};
    return orientation == PageOrientation::Landscape ? landscape : portrait;
}

Margins marginsOn(const Printer& printer, PageOrientation orientation) {
    const Margins wanted = wantedMargins(orientation);
    return {marginBehind(wanted.left, printer.physicalOffsetX() * printer.twipsPerPixelX()),
        marginBehind(wanted.top, printer.physicalOffsetY() * printer.twipsPerPixelY())};
}

bool takesOrientation(Printer& printer) {
    try {
        PageSettings turned = printer.page();
        turned.orientation = orientationFor(turned.orientation == PageOrientation::Portrait);
        printer.setPage(turned);
        return printer.page().orientation == turned.orientation;
    } catch (const std::exception&) {
        return false;
    }
}

bool setReportSheet(Printer& printer, bool wide) {
    if (!takesOrientation(printer))
        return false;
    PageSettings settings = printer.page();
    settings.orientation = orientationFor(wide);
    settings.paperSize = PageSettings::a4;
    printer.setPage(settings);
    return true;
}

PageDetails pageDetails(
    const Printer& printer, std::size_t lines, double topMargin, double bottomMarginHeight) {
    const double room = printer.scaleHeight() - topMargin - bottomMarginHeight;
    const double lineHeight = printer.textHeight("Test String");
    return {.pageCount = atLeastOne(std::floor(double(lines) * lineHeight / room) + 1),
        .linesPerPage = atLeastOne(std::floor(room / lineHeight))};
}

PageDetails usualPageDetails(const Printer& printer, std::size_t lines, PageOrientation orientation) {
    const double height =
        orientation == PageOrientation::Landscape ? usualHeightLandscape : usualHeightPortrait;
    PageDetails details;
    details.linesPerPage = atLeastOne(std::nearbyint(height * twipsPerInch / printer.textHeight("Testing")));
    details.pageCount = lines / details.linesPerPage + 1;
    return details;
}

void shrinkToFit(Printer& printer, const std::string& widestText, double room) {
    Font font = printer.font();
    // In tenths of a point, of which the steps make no others.
    for (int size = int(std::lround(font.size * tenths));
         printer.textWidth(widestText) > room && size - tenthsPerStep >= int(smallestFontSize * tenths);) {
        size -= tenthsPerStep;
        font.size = double(size) / tenths;
        printer.setFont(font);
    }
}

std::string pageHeader(
    const std::string& version, const std::string& file, double fileDate, double printDate) {
    return "Kestal v" + version + "  -  " + text::upperCased(file) + " : " + momentText(fileDate) +
           "  -  Date printed : " + momentText(printDate, Weekday::Named);
}

} // namespace genutil
