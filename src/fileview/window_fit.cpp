#include "fileview/window_fit.h"

#include <cmath>

namespace genutil {
namespace {

constexpr std::size_t standardColumns = 80;
constexpr double measuringSize = 8.25; // points
constexpr double textBoxMargin = 72;   // what the text box needs beside its text
constexpr double twipsPerPoint = 20;
constexpr double widestGlyph = 1.5; // em; no character of the report fonts is wider for each of its columns

// The widest line of a text in a proportional font, if it is wider than `width`.
std::string_view widestProportionalLine(
    Desktop& desktop, const Font& font, const text::TextDocument& document, double width) {
    std::string_view widest;
    const double columnBound = font.size * twipsPerPoint * widestGlyph;
    for (std::size_t i = 0; i < document.lineCount(); ++i) {
        const std::string_view line = document.line(i);
        if (double(line.size()) * columnBound <= width)
            continue;
        const double lineWidth = desktop.textWidth(font, std::string(line));
        if (lineWidth > width) {
            width = lineWidth;
            widest = line;
        }
    }
    return widest;
}

} // namespace

double wantedTextWidth(Desktop& desktop, const Font& font, const text::TextDocument& document) {
    Font measuring = font;
    measuring.size = measuringSize;
    const std::string margin = "xxx";
    if (desktop.isFixedPitch(font)) {
        const std::size_t columns = document.widestLine().columns;
        const std::size_t shown = margin.size() + (columns > standardColumns ? columns : 0);
        return double(shown) * desktop.textWidth(measuring, "x");
    }
    const double dots = desktop.textWidth(font, std::string(standardColumns, '.'));
    const std::string_view widest = widestProportionalLine(desktop, font, document, dots);
    return desktop.textWidth(measuring, margin + std::string(widest));
}

std::optional<Fitted> fitWindow(
    const Screen& screen, WindowSize window, double textBoxWidth, double textWidth) {
    if (textBoxWidth - textBoxMargin >= textWidth)
        return std::nullopt;
    const double delta = std::nearbyint(textWidth + textBoxMargin - textBoxWidth);
    Fitted fitted{{window.width + delta, window.height}, textBoxWidth + delta};
    double& width = fitted.window.width;
    if (width > screen.width) {
        width = screen.width;
        return fitted;
    }
    constexpr int smallScreen = 800; // pixels
    constexpr double smallScreenShare = 0.8;
    if (width < smallScreenShare * screen.width && int(screen.width / screen.twipsPerPixel) <= smallScreen)
        width = smallScreenShare * screen.width;
    if (width < screen.width)
        fitted.window.height = screen.height * width / screen.width;
    return fitted;
}

} // namespace genutil
