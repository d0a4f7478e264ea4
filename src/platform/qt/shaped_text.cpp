#include "platform/qt/shaped_text.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace genutil {
namespace {

// Whether the font is made of pictures. Asking for its glyphs' outlines would tell, but leaves the toolkit without
// their pictures.
bool isOfPictures(const QGlyphRun& run) {
    const QRawFont font = run.rawFont();
    return !font.fontTable("CBLC").isEmpty() || !font.fontTable("sbix").isEmpty();
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
        // Where no font knows the script, the toolkit puts boxes of its own, which are black on paper.
        if (run.rawFont().pixelSize() > 0)
            continue;
        run.setRawFont(plain);
        run.setGlyphIndexes(QList<quint32>(run.glyphIndexes().size(), 0));
    }
    isPicture_ = !runs_.isEmpty() && std::ranges::all_of(runs_, isOfPictures);
}

void ShapedText::paint(QPainter& painter, const QRectF& cell, double ascent, Qt::Alignment alignment) const {
    const double shrink = std::min(ascent / ascent_, 1.0);
    const double squeeze = std::min(cell.width() / width_, 1.0);
    const double free = alignment == Qt::AlignHCenter ? cell.width() - width_ * squeeze : 0;
    painter.save();
    painter.translate(cell.left() + free / 2, cell.top() + ascent - ascent_ * shrink);
    painter.scale(squeeze, shrink);
    for (const QGlyphRun& run : runs_)
        painter.drawGlyphRun({}, run);
    painter.restore();
}

QImage ShapedText::picture() const {
    QList<QImage> parts;
    QSize size(0, 0);
    for (const QGlyphRun& run : runs_) {
        for (const quint32 glyph : run.glyphIndexes()) {
            const QImage part = run.rawFont().alphaMapForGlyph(glyph, QRawFont::PixelAntialiasing);
            size = {size.width() + part.width(), std::max(size.height(), part.height())};
            parts.push_back(part);
        }
    }
    // Paper is white, and the edges of what is transparent would be ragged on it.
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    int x = 0;
    for (const QImage& part : parts) {
        painter.drawImage(x, 0, part);
        x += part.width();
    }
    return picture;
}

} // namespace genutil
