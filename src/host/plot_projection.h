#pragma once

#include <QPointF>

namespace kestal {

/// A transverse Mercator projection of zones six degrees wide, as exact as a drawing needs: GRS80, scale
/// 0.9996 on the central meridian, false origin 500,000 east and, south of the equator, 10,000,000 north.
/// Degrees and metres; x is the longitude or easting, y the latitude or northing.
class ZoneProjection {
public:
    /// `zone` from 1 to 60.
    ZoneProjection(int zone, bool isSouthern);

    QPointF toGrid(QPointF degrees) const;
    QPointF toDegrees(QPointF grid) const;
    double centralMeridian() const { return centralMeridian_; }

    static constexpr double zoneWidth = 6; // degrees

private:
    double centralMeridian_;
    double falseNorthing_;
};

} // namespace kestal
