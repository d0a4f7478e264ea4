#pragma once

#include "platform/qt/print/shaped_text.h"

#include <QFont>
#include <QHash>
#include <QRawFont>
#include <QString>

#include <array>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

namespace genutil {

// The characters of a font as glyphs, looked up once each. A character that the font lacks is a glyph of the
// font that stands in for it.
class PrintGlyphs {
public:
    // In dots, like all lengths here.
    PrintGlyphs(const QFont& font, double columnWidth);

    struct Glyph {
        std::size_t font = 0; // number of its font
        quint32 index = 0;
        double shift = 0; // from the left of its columns to its origin, so that it stands in their middle
    };
    // Nothing for a character that is several glyphs, a picture, wider than its columns or higher than the
    // line: that one is to be shaped.
    const std::optional<Glyph>& of(char32_t character);
    // Good until the next call.
    const ShapedText& shaped(const QString& text);
    const QRawFont& font(std::size_t number) const { return fonts_[number]; }

private:
    void lookUpAscii();
    std::optional<Glyph> lookUp(char32_t character);
    std::size_t numberOf(const QRawFont& font);

    QFont font_;
    double columnWidth_;
    std::vector<QRawFont> fonts_; // the font itself, then its stand-ins
    std::array<std::optional<Glyph>, 128> ascii_;
    std::unordered_map<char32_t, std::optional<Glyph>> others_;
    QHash<QString, ShapedText> shapes_;
};

} // namespace genutil
