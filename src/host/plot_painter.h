#pragma once

#include "host/plot_data.h"

#include <QPen>
#include <QRectF>

class QPainter;

namespace kestal {

/// The drawing of a job before it is shown: x to the right, y upwards, in metres, or in degrees of latitude
/// with the longitudes drawn together as they are in the middle of the drawing.
struct PlotScene {
    std::vector<QPointF> places; ///< of the points
    std::vector<std::vector<QPointF>> zoneBoundaries;
    QRectF bounds; ///< of the places
    bool isInDegrees = false;
};
/// Geographic where the coordinates are, or where the mark wants it and the job has a projection.
PlotScene makeScene(const PlotData& data, const ViewMarks& marks);

/// Where the scene is shown: pixels of the widget.
struct PlotFrame {
    QSizeF size;
    QPointF centre;   ///< the place that is shown in the middle
    double scale = 1; ///< pixels for a metre or degree

    QPointF toPixel(QPointF place) const;
    QPointF toPlace(QPointF pixel) const;
};

/// The look of a kind of line, as in the legend of the display settings.
QPen linePen(Mark kind);

/// A round length and its bar, whose left end is at `at`.
struct ScaleBar {
    double length = 0; ///< metres
    QRectF place;      ///< with its text
};
ScaleBar scaleBarOf(const PlotFrame& frame, QPointF at);

/// Draws what the marks want and the frame shows. Of labels that would cover each other the first is drawn.
void paintPlot(QPainter& painter, const PlotData& data, const PlotScene& scene, const PlotFrame& frame,
    const ViewMarks& marks);
void paintScaleBar(QPainter& painter, const ScaleBar& bar);

/// The part of a line inside a rectangle; false where there is none.
bool clipLine(QPointF& from, QPointF& to, const QRectF& rectangle);

} // namespace kestal
