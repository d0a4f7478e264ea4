#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QImage>
#include <QList>
#include <QRawFont>
#include <QString>

class QPainter;

namespace genutil {

// A piece of a line as glyphs of a font and of those that stand in for it. Lengths are the font's device's dots.
class ShapedText {
public:
    // `plain` is the font itself: it shows a box for a letter that no font has.
    ShapedText(const QString& text, const QFont& font, const QRawFont& plain);

    const QList<QGlyphRun>& runs() const { return runs_; }
    double width() const { return width_; }
    // Whether it is seen, but has no outlines that could be written as text: coloured emoji.
    bool isPicture() const { return isPicture_; }

    // Into the cell, whose line is `ascent` high above the letters' feet. What is wider than the cell or higher
    // than the line is squeezed.
    void paint(QPainter& painter, const QRectF& cell, double ascent, Qt::Alignment alignment) const;
    // What is seen of it and no more, in the font's size on white.
    QImage picture() const;

private:
    QList<QGlyphRun> runs_;
    double width_ = 0;
    double ascent_ = 0;
    bool isPicture_ = false;
};

} // namespace genutil
