#pragma once

#include "hostif/printer.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPointF>

#include <string>
#include <string_view>

class QPaintDevice;
class QPainter;

namespace genutil {

// Puts lines on paper in one font, each character on its column. Lengths are the device's dots.
class PrintInk {
public:
    PrintInk(const QFont& font, QPaintDevice* device);

    double width(std::string_view text) const;
    double lineHeight() const { return metrics_.lineSpacing(); }
    // `at` is the line's left top corner; what begins behind `right` is left out.
    void paint(QPainter& painter, const QPointF& at, double right, const PrintedLine& line) const;

private:
    QFont font_;
    QFontMetricsF metrics_;
    double columnWidth_;
};

} // namespace genutil
