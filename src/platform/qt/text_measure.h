#pragma once

#include <QFontMetricsF>

#include <array>
#include <string_view>

namespace genutil {

// Measures texts in one font, as wide as views show them. Quick for plain English texts: lists measure
// hundreds of thousands.
class TextMeasure {
public:
    explicit TextMeasure(const QFont& font);

    // Of one line, in pixels.
    double width(std::string_view text) const;

private:
    static constexpr char first = ' ';
    static constexpr char last = '~';

    QFontMetricsF metrics_;
    std::array<double, last - first + 1> widths_{};
    bool addsUp_; // a text is as wide as its characters: the font joins none of them
};

} // namespace genutil
