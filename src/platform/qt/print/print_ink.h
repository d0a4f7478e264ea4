#pragma once

#include "hostif/printer.h"
#include "platform/qt/print/print_glyphs.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPointF>

#include <string_view>

class QPaintDevice;
class QPainter;

namespace genutil {

// Puts lines on paper in one font, each character on its columns. Lengths are the device's dots.
class PrintInk {
public:
    PrintInk(const QFont& font, QPaintDevice* device);

    double width(std::string_view text) const;
    double lineHeight() const { return metrics_.lineSpacing(); }
    // `at` is the line's left top corner; what passes `right` is cut off.
    void paint(QPainter& painter, const QPointF& at, double right, const PrintedLine& line);

private:
    QFont font_;
    QFontMetricsF metrics_;
    double columnWidth_;
    PrintGlyphs glyphs_;
};

} // namespace genutil
