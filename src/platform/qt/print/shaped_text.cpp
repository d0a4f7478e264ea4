#include "platform/qt/print/shaped_text.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace genutil {
namespace {

constexpr double leastHeight = 0.75; // of what is shrunk to the height of its line

// Where no font knows the script, the toolkit puts boxes of its own.
bool isBoxes(const QGlyphRun& run) {
    return run.rawFont().pixelSize() <= 0;
}

// Whether the font is made of pictures. Asking for its glyphs' outlines would tell, but leaves the toolkit
// without their pictures.
bool isOfPictures(const QGlyphRun& run) {
    const QRawFont font = run.rawFont();
    return !font.fontTable("CBLC").isEmpty() || !font.fontTable("sbix").isEmpty();
}

// How far the highest glyph rises above the line's feet.
double riseOf(const QList<QGlyphRun>& runs) {
    double rise = 0;
    for (const QGlyphRun& run : runs)
        for (const quint32 glyph : run.glyphIndexes())
            rise = std::max(rise, -run.rawFont().boundingRect(glyph).top());
    return rise;
}

// A mark of another font than the letter's, or of a font that does not say where its marks stand, comes out
// beside the letter: it is put on it.
QGlyphRun withMarksOn(QGlyphRun run, double letterWidth) {
    QList<QPointF> places = run.positions();
    const QList<quint32> glyphs = run.glyphIndexes();
    for (qsizetype i = 0; i < places.size(); ++i) {
        const QRectF ink = run.rawFont().boundingRect(glyphs[i]).translated(places[i]);
        if (const double middle = ink.center().x(); !ink.isEmpty() && (middle < 0 || middle > letterWidth))
            places[i].rx() += letterWidth / 2 - middle;
    }
    run.setPositions(places);
    return run;
}

} // namespace

ShapedText::ShapedText(const QString& text, const QFont& font, const QRawFont& plain) {
    QTextLayout layout(text, font);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    width_ = line.naturalTextWidth();
    ascent_ = line.ascent();
    runs_ = layout.glyphRuns();
    for (QGlyphRun& run : runs_) {
        if (isBoxes(run)) {
            // On paper they would be black.
            run.setRawFont(plain);
            run.setGlyphIndexes(QList<quint32>(run.glyphIndexes().size(), 0));
        }
    }
    isPicture_ = !runs_.isEmpty() && std::ranges::all_of(runs_, isOfPictures);
    if (isPicture_)
        picture_ = makePicture();
    else
        rise_ = riseOf(runs_);
}

void ShapedText::paint(QPainter& painter, const QRectF& cell, double ascent, bool isOne) const {
    painter.save();
    painter.setClipRect(cell, Qt::IntersectClip);
    if (isPicture_) {
        QSizeF size = picture_.size();
        if (size.width() > cell.width() || size.height() > cell.height())
            size.scale(cell.size(), Qt::KeepAspectRatio);
        QRectF area({}, size);
        area.moveCenter(cell.center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(area, picture_);
    } else {
        const double shrink = std::clamp(ascent / std::max(rise_, 1.0), leastHeight, 1.0);
        const double squeeze = std::min(cell.width() / std::max(width_, 1.0), 1.0);
        const double free = isOne ? cell.width() - width_ * squeeze : 0;
        painter.translate(cell.left() + free / 2, cell.top() + ascent - ascent_ * shrink);
        painter.scale(squeeze, shrink);
        for (const QGlyphRun& run : runs_)
            painter.drawGlyphRun({}, isOne ? withMarksOn(run, width_) : run);
    }
    painter.restore();
}

// What is seen and no more. Paper is white, and the edges of what is transparent would be ragged on it.
QImage ShapedText::makePicture() const {
    QList<QImage> parts;
    QSize size(0, 0);
    for (const QGlyphRun& run : runs_) {
        for (const quint32 glyph : run.glyphIndexes()) {
            parts.push_back(run.rawFont().alphaMapForGlyph(glyph, QRawFont::PixelAntialiasing));
            size = {size.width() + parts.back().width(), std::max(size.height(), parts.back().height())};
        }
    }
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter;
    if (!size.isEmpty())
        painter.begin(&picture);
    for (int x = 0; const QImage& part : parts) {
        if (!part.isNull())
            painter.drawImage(x, 0, part);
        x += part.width();
    }
    return picture;
}

} // namespace genutil
