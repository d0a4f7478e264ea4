#include "platform/qt/print/print_glyphs.h"

#include "text/character_width.h"

#include <algorithm>

namespace genutil {
namespace {

constexpr qsizetype keptShapes = 128; // a tenth of a megabyte each when they are pictures
constexpr double tolerance = 0.5;     // dots that hinting may add to a width

} // namespace

PrintGlyphs::PrintGlyphs(const QFont& font, double columnWidth)
    : font_(font), columnWidth_(columnWidth), fonts_{QRawFont::fromFont(font)} {
    lookUpAscii();
}

// All of them at once: a report needs nearly all.
void PrintGlyphs::lookUpAscii() {
    QString all;
    for (char16_t c = ' '; c <= '~'; ++c)
        all += QChar(c);
    const QList<quint32> indexes = fonts_[0].glyphIndexesForString(all);
    const QList<QPointF> advances = fonts_[0].advancesForGlyphIndexes(indexes);
    for (qsizetype i = 0; i < advances.size(); ++i)
        if (const double free = columnWidth_ - advances[i].x(); indexes[i] != 0 && free > -tolerance)
            ascii_[std::size_t(all[i].unicode())] = {.index = indexes[i], .shift = std::max(free / 2, 0.0)};
}

const std::optional<PrintGlyphs::Glyph>& PrintGlyphs::of(char32_t character) {
    if (character < ascii_.size())
        return ascii_[character];
    const auto [entry, isNew] = others_.try_emplace(character);
    if (isNew)
        entry->second = lookUp(character);
    return entry->second;
}

std::optional<PrintGlyphs::Glyph> PrintGlyphs::lookUp(char32_t character) {
    const ShapedText& look = shaped(QString::fromUcs4(&character, 1));
    const QList<QGlyphRun>& runs = look.runs();
    if (runs.size() != 1 || runs[0].glyphIndexes().size() != 1 || look.isPicture())
        return {};
    const QRawFont font = runs[0].rawFont();
    const quint32 index = runs[0].glyphIndexes()[0];
    const double free = text::characterWidth(character) * columnWidth_ - look.width();
    const QRectF ink = font.boundingRect(index);
    const bool isTooHigh = ink.top() < -fonts_[0].ascent() || ink.bottom() > fonts_[0].descent();
    if (free < -tolerance || (isTooHigh && font != fonts_[0]))
        return {};
    return Glyph{numberOf(font), index, std::max(free / 2, 0.0)};
}

const ShapedText& PrintGlyphs::shaped(const QString& text) {
    const auto known = shapes_.constFind(text);
    if (known != shapes_.cend())
        return *known;
    if (shapes_.size() >= keptShapes)
        shapes_.clear();
    return *shapes_.insert(text, ShapedText(text, font_, fonts_[0]));
}

std::size_t PrintGlyphs::numberOf(const QRawFont& font) {
    const auto known = std::ranges::find(fonts_, font);
    if (known == fonts_.end())
        return fonts_.push_back(font), fonts_.size() - 1;
    return std::size_t(known - fonts_.begin());
}

} // namespace genutil
