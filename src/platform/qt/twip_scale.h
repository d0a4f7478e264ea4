#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace genutil {

// Converts between twips and the device-independent pixels that windows are laid out in. The scale factor of
// a high-resolution screen is no part of it: the toolkit draws a pixel with as many dots as the factor asks
// for.
class TwipScale {
public:
    explicit TwipScale(double dotsPerInch)
        : twipsPerPixel_(twipsPerInch / (dotsPerInch > 0 ? dotsPerInch : 96)) {}
    // The scale of the primary screen; of 96 dots per inch where there is none.
    static TwipScale ofScreen();

    double twipsPerPixel() const { return twipsPerPixel_; }
    double twips(double pixels) const { return pixels * twipsPerPixel_; }
    // The nearest pixel; lengths beyond what a window can have, and no numbers, are cut to what it can.
    int pixels(double twips) const { return bounded(std::round(twips / twipsPerPixel_)); }
    // As many whole pixels as it takes to hold the length, so that no text is cut off.
    int pixelsHolding(double twips) const { return bounded(std::ceil(twips / twipsPerPixel_ - 1e-6)); }

private:
    static constexpr double twipsPerInch = 1440;
    static constexpr double limit = (1 << 24) - 1;

    static int bounded(double pixels) {
        return std::isnan(pixels) ? 0 : int(std::clamp(pixels, -limit, limit));
    }

    double twipsPerPixel_;
};

} // namespace genutil
