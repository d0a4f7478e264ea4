#include "fileview/placement.h"

#include "hostif/error.h"
#include "text/blanks.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace genutil {
namespace {

// A window larger than this many screens is a damaged setting.
constexpr double largestShare = 4;

// Commas separate the fields, so the decimal separator is a point in every locale.
std::string plainDecimal(double value) {
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed).ptr;
    return {buffer, end};
}

bool isWindowLength(double length, double screenLength) {
    return std::isfinite(length) && length > 0 && length <= largestShare * screenLength;
}

} // namespace

Placement readPlacement(const std::string& stored, StringUtilities& strUtil, const Screen& screen) {
    std::string rest = stored;
    const auto next = [&] { return leadingNumber(strUtil.NextField(rest, ",")); };
    const double state = next();
    if (state != 0 && state != 1 && state != 2)
        throw Error(
            errors::InvalidCall, "Window placement '" + stored + "': the window state must be 0, 1 or 2");
    Placement placement{.state = WindowState(int(state))};
    if (placement.state == WindowState::Maximized && text::isBlank(rest))
        return placement;
    placement.top = next();
    placement.left = next();
    placement.height = next();
    placement.width = next();
    if (!isWindowLength(placement.height, screen.height) || !isWindowLength(placement.width, screen.width))
        throw Error(errors::InvalidCall,
            "Window placement '" + stored + "': height and width must be positive and at most four screens");
    // A window that the screen of today cannot show is brought back onto it.
    placement.top = std::clamp(placement.top, 0.0, std::max(0.0, screen.height * 0.9));
    placement.left = std::clamp(placement.left, -placement.width * 0.9, screen.width * 0.9);
    return placement;
}

std::string normalPlacement(const Screen& screen, double width, double height) {
    const double top = std::nearbyint((screen.height - height) / 2);
    const double left = std::nearbyint((screen.width - width) / 2);
    return "0," + plainDecimal(top) + "," + plainDecimal(left) + "," + plainDecimal(height) + "," +
           plainDecimal(width);
}

std::string maximizedPlacement(std::string stored) {
    return stored.empty() ? "2" : stored.replace(0, 1, "2");
}

} // namespace genutil
