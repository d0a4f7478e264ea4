#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QImage>
#include <QList>
#include <QRawFont>
#include <QString>

class QPainter;

namespace genutil {

// A piece of a line as glyphs of a font and of those that stand in for it. Lengths are the font's device's
// dots.
class ShapedText {
public:
    // `plain` is the font itself: it shows a box for a letter that no font has.
    ShapedText(const QString& text, const QFont& font, const QRawFont& plain);

    const QList<QGlyphRun>& runs() const { return runs_; }
    double width() const { return width_; }
    // Whether it has no outlines that could be written as text: coloured emoji.
    bool isPicture() const { return isPicture_; }

    // Into the cell, whose line is `ascent` high above the letters' feet. What is wider than the cell or
    // higher than the line is squeezed, and what still leaves the cell is cut off. If it is one character it
    // stands in the middle.
    void paint(QPainter& painter, const QRectF& cell, double ascent, bool isOne) const;

private:
    QImage makePicture() const;

    QList<QGlyphRun> runs_;
    double width_ = 0;
    double ascent_ = 0; // from the runs' top to the letters' feet
    double rise_ = 0;   // from the letters' feet to the top of the highest
    bool isPicture_ = false;
    QImage picture_;
};

} // namespace genutil
