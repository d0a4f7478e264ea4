#include "host/plot_projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kestal {
namespace {

// Series in the third flattening n, to its fourth power: better than a millimetre within a zone.
constexpr double flattening = 1 / 298.257222101;
constexpr double semiMajorAxis = 6378137;
constexpr double n = flattening / (2 - flattening);
constexpr double scale = 0.9996 * semiMajorAxis / (1 + n) * (1 + n * n / 4 + n * n * n * n / 64);
constexpr double falseEasting = 500'000;
constexpr std::array toGridSeries{n / 2 - 2 * n * n / 3 + 5 * n * n * n / 16 + 41 * n * n * n * n / 180,
    13 * n* n / 48 - 3 * n* n* n / 5 + 557 * n* n* n* n / 1440, 61 * n* n* n / 240 - 103 * n* n* n* n / 140,
    49561 * n* n* n* n / 161280};
constexpr std::array fromGridSeries{n / 2 - 2 * n * n / 3 + 37 * n * n * n / 96 - n * n * n * n / 360,
    n* n / 48 + n* n* n / 15 - 437 * n* n* n* n / 1440, 17 * n* n* n / 480 - 37 * n* n* n* n / 840,
    4397 * n* n* n* n / 161280};

constexpr double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}
constexpr double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

} // namespace

ZoneProjection::ZoneProjection(int zone, bool isSouthern)
    : centralMeridian_(zone * zoneWidth - 183), falseNorthing_(isSouthern ? 10'000'000 : 0) {}

QPointF ZoneProjection::toGrid(QPointF point) const {
    const double eccentricity = 2 * std::sqrt(n) / (1 + n);
    const double sine = std::sin(radians(point.y()));
    const double conformal = std::sinh(std::atanh(sine) - eccentricity * std::atanh(eccentricity * sine));
    const double longitude = radians(point.x() - centralMeridian_);
    const double xi = std::atan2(conformal, std::cos(longitude));
    const double eta = std::asinh(std::sin(longitude) / std::hypot(conformal, std::cos(longitude)));
    double north = xi;
    double east = eta;
    for (std::size_t i = 0; i < toGridSeries.size(); ++i) {
        const double order = 2 * (static_cast<double>(i) + 1);
        north += toGridSeries[i] * std::sin(order * xi) * std::cosh(order * eta);
        east += toGridSeries[i] * std::cos(order * xi) * std::sinh(order * eta);
    }
    return {falseEasting + scale * east, falseNorthing_ + scale * north};
}

QPointF ZoneProjection::toDegrees(QPointF grid) const {
    const double north = (grid.y() - falseNorthing_) / scale;
    // Half the Earth away from the central meridian the series mean nothing any more.
    const double east = std::clamp((grid.x() - falseEasting) / scale, -3.0, 3.0);
    double xi = north;
    double eta = east;
    for (std::size_t i = 0; i < fromGridSeries.size(); ++i) {
        const double order = 2 * (static_cast<double>(i) + 1);
        xi -= fromGridSeries[i] * std::sin(order * north) * std::cosh(order * east);
        eta -= fromGridSeries[i] * std::cos(order * north) * std::sinh(order * east);
    }
    const double conformal = std::asin(std::sin(xi) / std::cosh(eta));
    // From the conformal latitude to the geographic one: each step takes the fault down by the square of the
    // eccentricity.
    const double eccentricity = 2 * std::sqrt(n) / (1 + n);
    const double target = std::atanh(std::sin(conformal));
    double latitude = conformal;
    constexpr int steps = 6;
    for (int i = 0; i < steps; ++i)
        latitude =
            std::asin(std::tanh(target + eccentricity * std::atanh(eccentricity * std::sin(latitude))));
    return {centralMeridian_ + degrees(std::atan2(std::sinh(eta), std::cos(xi))), degrees(latitude)};
}

} // namespace kestal
