#pragma once

#include "text/text_position.h"

#include <QFont>
#include <QFontMetricsF>

#include <array>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace genutil {

// Measures where the characters of unwrapped lines stand. In a fixed-pitch font that is counting columns; in
// any other each character has its own width. Long lines get marks every few thousand bytes as they are
// walked, so that their far end is walked to once and not again for every painting.
class LineRuler {
public:
    explicit LineRuler(const QFont& font);

    bool isFixedPitch() const { return fixedPitch_; }
    double lineHeight() const { return lineHeight_; }
    double ascent() const { return ascent_; }
    // The width of a column: of "x".
    double columnWidth() const { return columnWidth_; }

    struct Spot {
        std::size_t byte = 0;
        double x = 0; // pixels from the line's start
    };

    // Where the character at `byte` starts. `number` identifies the line from call to call.
    double xOf(std::string_view line, std::size_t number, std::size_t byte);
    // The character that covers x; the end of the line for an x behind it, its start for one before it.
    Spot spotAt(std::string_view line, std::size_t number, double x);

    // Whether the character is just as wide as its columns, so that it may be painted with its neighbours.
    bool fillsItsColumns(char32_t character);

    // What lies before the edit keeps its marks.
    void changed(const text::TextChange& change);

private:
    // Goes over a run of plain characters or one other, not beyond `end`; x counts in units. In a
    // proportional font the run stays at or before `x`; the one other character may go beyond.
    Spot step(std::string_view line, Spot from, std::size_t end, double x);
    double characterWidth(char32_t character);
    // Walks to the last spot whose byte is not above `byte` and whose x is not above `x`.
    Spot walk(std::string_view line, std::size_t number, std::size_t byte, double x);

    QFontMetricsF metrics_;
    bool fixedPitch_;
    double lineHeight_;
    double ascent_;
    double columnWidth_;
    double unit_; // pixels: a column's width in a fixed-pitch font, else 1
    std::array<double, 128> plainWidths_{};
    std::unordered_map<char32_t, double> widths_;
    std::unordered_map<char32_t, bool> fills_;
    std::unordered_map<std::size_t, std::vector<Spot>> marks_;
};

} // namespace genutil
