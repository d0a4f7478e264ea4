#include "host/plot_painter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_set>

namespace kestal {
namespace {

const QColor background(16, 20, 24); // the colours of the lines are made for a dark ground
const QColor pointColour(230, 230, 230);
const QColor adjustedColour(0, 255, 0);
const QColor labelColour(200, 210, 220);
const QColor boundaryColour(150, 120, 60);
constexpr int markSize = 3;               // pixels from the middle of a point's cross to its ends
constexpr std::size_t mostCrosses = 5000; // beyond it points are dots

double stretchOf(const QRectF& degrees) {
    return std::max(0.01, std::cos(degrees.center().y() * std::numbers::pi / 180));
}

QRectF boundsOf(const std::vector<QPointF>& places) {
    if (places.empty())
        return {};
    QPointF least = places[0];
    QPointF most = places[0];
    for (const QPointF place : places) {
        least = {std::min(least.x(), place.x()), std::min(least.y(), place.y())};
        most = {std::max(most.x(), place.x()), std::max(most.y(), place.y())};
    }
    return {least, most};
}

// The boundary meridians that the drawing comes near to, in degrees.
std::vector<double> meridiansNear(const QRectF& degrees) {
    constexpr double width = ZoneProjection::zoneWidth;
    std::vector<double> meridians;
    const double first = std::floor(degrees.left() / width) * width;
    for (double each = first; each <= degrees.right() + width && meridians.size() <= 60; each += width)
        meridians.push_back(each);
    return meridians;
}

// From well below to well above the drawing, so that a boundary crosses it wherever it is dragged to.
std::vector<QPointF> meridian(double longitude, const QRectF& degrees) {
    constexpr double reach = 10; // degrees
    constexpr double step = 0.25;
    std::vector<QPointF> line;
    const double last = std::min(degrees.bottom() + reach, 84.0);
    for (double latitude = std::max(degrees.top() - reach, -84.0); latitude <= last; latitude += step)
        line.emplace_back(longitude, latitude);
    return line;
}

void paintLines(QPainter& painter, const PlotData& data, const PlotScene& scene, const PlotFrame& frame,
    const ViewMarks& marks, const QRectF& shown) {
    std::vector<std::vector<QLineF>> ofKind(static_cast<std::size_t>(Mark::Count));
    for (const PlotLine& line : data.lines) {
        QPointF from = frame.toPixel(scene.places[line.from]);
        QPointF to = frame.toPixel(scene.places[line.to]);
        if (marks.isSet(line.kind) && clipLine(from, to, shown))
            ofKind[static_cast<std::size_t>(line.kind)].emplace_back(from, to);
    }
    for (std::size_t kind = 0; kind < ofKind.size(); ++kind) {
        QPen pen = linePen(static_cast<Mark>(kind));
        if (ofKind[kind].size() > mostCrosses)
            pen.setStyle(Qt::SolidLine); // so many lines leave no dash to be seen, and dashes take their time
        painter.setPen(pen);
        painter.drawLines(ofKind[kind].data(), static_cast<int>(ofKind[kind].size()));
    }
}

void paintBoundaries(QPainter& painter, const PlotScene& scene, const PlotFrame& frame, const QRectF& shown) {
    painter.setPen(QPen(boundaryColour, 1, Qt::DashLine));
    for (const auto& line : scene.zoneBoundaries)
        for (std::size_t i = 1; i < line.size(); ++i) {
            QPointF from = frame.toPixel(line[i - 1]);
            QPointF to = frame.toPixel(line[i]);
            if (clipLine(from, to, shown))
                painter.drawLine(from, to);
        }
}

// The positions of the points that are seen.
std::vector<std::size_t> pointsWithin(const PlotScene& scene, const PlotFrame& frame, const QRectF& shown) {
    std::vector<std::size_t> seen;
    for (std::size_t i = 0; i < scene.places.size(); ++i)
        if (shown.contains(frame.toPixel(scene.places[i])))
            seen.push_back(i);
    return seen;
}

void paintPoints(QPainter& painter, const PlotData& data, const PlotScene& scene, const PlotFrame& frame,
    const ViewMarks& marks, const std::vector<std::size_t>& seen) {
    std::vector<QPointF> dots;
    std::vector<QLineF> crosses;
    std::vector<QPointF> adjusted;
    for (const std::size_t i : seen) {
        const QPointF at = frame.toPixel(scene.places[i]);
        if (marks.isSet(Mark::GpsPoints) && data.points[i].isAdjusted)
            adjusted.push_back(at);
        if (seen.size() > mostCrosses) {
            dots.push_back(at);
            continue;
        }
        crosses.emplace_back(at - QPointF(markSize, 0), at + QPointF(markSize, 0));
        crosses.emplace_back(at - QPointF(0, markSize), at + QPointF(0, markSize));
    }
    painter.setPen(pointColour);
    painter.drawPoints(dots.data(), static_cast<int>(dots.size()));
    painter.drawLines(crosses.data(), static_cast<int>(crosses.size()));
    painter.setPen(adjustedColour);
    for (const QPointF at : adjusted)
        painter.drawEllipse(at, 2 * markSize, 2 * markSize);
}

// Which parts of the picture have a label, as cells of half a line's height.
class TakenCells {
public:
    explicit TakenCells(double cellSize) : size_(cellSize) {}
    // False, and nothing is taken, where another label is in the way.
    bool take(const QRectF& place) {
        std::vector<std::int64_t> own;
        for (auto y = indexOf(place.top()); y <= indexOf(place.bottom()); ++y)
            for (auto x = indexOf(place.left()); x <= indexOf(place.right()); ++x) {
                own.push_back(y * columns + x);
                if (taken_.contains(own.back()))
                    return false;
            }
        taken_.insert(own.begin(), own.end());
        return true;
    }

private:
    static constexpr std::int64_t columns = 1'000'000;
    std::int64_t indexOf(double pixel) const { return static_cast<std::int64_t>(std::floor(pixel / size_)); }

    double size_; // pixels
    std::unordered_set<std::int64_t> taken_;
};

void paintLabels(QPainter& painter, const PlotData& data, const PlotScene& scene, const PlotFrame& frame,
    const ViewMarks& marks, const std::vector<std::size_t>& seen) {
    const std::vector<Mark> kinds = marks.labels();
    const QFontMetricsF metrics(painter.font());
    const double line = metrics.height();
    TakenCells cells(line / 2);
    painter.setPen(labelColour);
    for (const std::size_t i : seen) {
        QStringList texts;
        double width = 0;
        for (const Mark kind : kinds) {
            if (const QString text = data.label(data.points[i], kind); !text.isEmpty())
                texts += text;
            width = texts.isEmpty() ? 0 : std::max(width, metrics.horizontalAdvance(texts.last()));
        }
        const QPointF at = frame.toPixel(scene.places[i]) + QPointF(2 * markSize, -line);
        if (texts.isEmpty() || !cells.take({at, QSizeF(width, line * static_cast<double>(texts.size()))}))
            continue;
        for (int each = 0; each < texts.size(); ++each)
            painter.drawText(at + QPointF(0, each * line + metrics.ascent()), texts[each]);
    }
}

} // namespace

PlotScene makeScene(const PlotData& data, const ViewMarks& marks) {
    PlotScene scene;
    const bool isConverted = !data.isGeographic && data.projection && marks.isSet(Mark::PlotGeographic);
    scene.isInDegrees = data.isGeographic || isConverted;
    for (const PlotPoint& point : data.points)
        scene.places.push_back(isConverted ? data.projection->toDegrees(point.place) : point.place);
    std::vector<QPointF> degrees;
    if (marks.isSet(Mark::ZoneBoundaries) && (scene.isInDegrees || data.projection)) {
        degrees = scene.places;
        if (!scene.isInDegrees)
            std::ranges::transform(
                degrees, degrees.begin(), [&](QPointF place) { return data.projection->toDegrees(place); });
    }
    if (const QRectF area = boundsOf(degrees); !degrees.empty())
        for (const double longitude : meridiansNear(area))
            scene.zoneBoundaries.push_back(meridian(longitude, area));
    const double stretch = scene.isInDegrees ? stretchOf(boundsOf(scene.places)) : 1;
    const auto toScene = [&](QPointF place) { return QPointF(place.x() * stretch, place.y()); };
    for (QPointF& place : scene.places)
        place = toScene(place);
    for (auto& line : scene.zoneBoundaries)
        for (QPointF& place : line)
            place = scene.isInDegrees ? toScene(place) : data.projection->toGrid(place);
    scene.bounds = boundsOf(scene.places);
    return scene;
}

QPointF PlotFrame::toPixel(QPointF place) const {
    return {size.width() / 2 + (place.x() - centre.x()) * scale,
        size.height() / 2 - (place.y() - centre.y()) * scale};
}

QPointF PlotFrame::toPlace(QPointF pixel) const {
    return {centre.x() + (pixel.x() - size.width() / 2) / scale,
        centre.y() - (pixel.y() - size.height() / 2) / scale};
}

QPen linePen(Mark kind) {
    switch (kind) {
    case Mark::HeightLines:
        return {QColor(255, 255, 255), 1, Qt::DotLine};
    case Mark::Radiations:
        return {QColor(255, 255, 0), 1, Qt::SolidLine};
    case Mark::Traverse:
        return {QColor(255, 0, 0), 1, Qt::SolidLine};
    case Mark::ReferenceLines:
        return {QColor(255, 0, 255), 1, Qt::DashLine};
    case Mark::LsAngles:
        return {QColor(0, 0, 255), 2, Qt::DashDotLine};
    case Mark::LsHorizontalDistances:
        return {QColor(0, 255, 255), 1, Qt::DotLine};
    case Mark::LsSlopeDistances:
        return {QColor(128, 128, 0), 1, Qt::DashLine};
    case Mark::LsVerticalAngles:
        return {QColor(128, 128, 0), 1, Qt::DotLine};
    case Mark::LsGpsVectors:
        return {QColor(0, 255, 0), 2, Qt::SolidLine};
    default:
        return Qt::NoPen;
    }
}

bool clipLine(QPointF& from, QPointF& to, const QRectF& rectangle) {
    double begin = 0;
    double end = 1;
    const QPointF way = to - from;
    const std::pair<double, double> sides[] = {{-way.x(), from.x() - rectangle.left()},
        {way.x(), rectangle.right() - from.x()}, {-way.y(), from.y() - rectangle.top()},
        {way.y(), rectangle.bottom() - from.y()}};
    for (const auto& [direction, distance] : sides) {
        if (direction == 0 && distance < 0)
            return false; // beside the rectangle and parallel to this side
        if (direction < 0)
            begin = std::max(begin, distance / direction);
        else if (direction > 0)
            end = std::min(end, distance / direction);
    }
    if (begin > end)
        return false;
    to = from + end * way;
    from += begin * way;
    return true;
}

void paintPlot(QPainter& painter, const PlotData& data, const PlotScene& scene, const PlotFrame& frame,
    const ViewMarks& marks) {
    constexpr double margin = 20; // pixels: a mark or a dash begins outside
    const QRectF shown =
        QRectF(QPointF(), frame.size).marginsAdded(QMarginsF(margin, margin, margin, margin));
    painter.fillRect(shown, background);
    painter.setRenderHint(QPainter::Antialiasing, data.points.size() <= mostCrosses);
    paintBoundaries(painter, scene, frame, shown);
    paintLines(painter, data, scene, frame, marks, shown);
    const std::vector<std::size_t> seen = pointsWithin(scene, frame, shown);
    paintPoints(painter, data, scene, frame, marks, seen);
    paintLabels(painter, data, scene, frame, marks, seen);
    if (marks.isSet(Mark::Geoid) && !data.geoidFile.isEmpty())
        painter.drawText(QRectF(QPointF(), frame.size).marginsRemoved(QMarginsF(8, 6, 8, 6)),
            Qt::AlignTop | Qt::AlignRight, "Geoid model: " + data.geoidFile);
}

ScaleBar scaleBarOf(const PlotFrame& frame, QPointF at) {
    const double wanted = frame.size.width() / 4 / frame.scale;
    const double power = std::pow(10, std::floor(std::log10(wanted)));
    const double factor = wanted / power >= 5 ? 5 : wanted / power >= 2 ? 2 : 1;
    constexpr double height = 28;
    return {factor * power, {at, QSizeF(factor * power * frame.scale, height)}};
}

void paintScaleBar(QPainter& painter, const ScaleBar& bar) {
    constexpr double tick = 6;
    const QPointF left = bar.place.bottomLeft();
    const QPointF right = bar.place.bottomRight();
    painter.setPen(QPen(pointColour, 2));
    painter.drawLine(left, right);
    painter.drawLine(left, left - QPointF(0, tick));
    painter.drawLine(right, right - QPointF(0, tick));
    constexpr double kilometre = 1000;
    const QString text = bar.length >= kilometre ? QString("%1 km").arg(bar.length / kilometre)
                                                 : QString("%1 m").arg(bar.length);
    painter.drawText(bar.place.adjusted(0, 0, 0, -tick - 2), Qt::AlignCenter | Qt::TextDontClip, text);
}

} // namespace kestal
