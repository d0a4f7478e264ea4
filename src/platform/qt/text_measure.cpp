#include "platform/qt/text_measure.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace genutil {

TextMeasure::TextMeasure(const QFont& font) : metrics_(font) {
    for (char c = first; c <= last; ++c)
        widths_[std::size_t(c - first)] = metrics_.horizontalAdvance(QLatin1Char(c));
    // A text in which every character stands beside every other one tells of any pair that is joined.
    QString pairs;
    for (char a = first; a <= last; ++a)
        for (char b = first; b <= last; ++b)
            pairs.append(QLatin1Char(a)).append(QLatin1Char(b));
    const double apart = std::accumulate(widths_.begin(), widths_.end(), 0.0) * 2 * double(widths_.size());
    addsUp_ = std::abs(metrics_.horizontalAdvance(pairs) - apart) < 0.01;
}

double TextMeasure::width(std::string_view text) const {
    if (!addsUp_ || !std::ranges::all_of(text, [](char c) { return first <= c && c <= last; }))
        return metrics_.horizontalAdvance(QString::fromUtf8(text.data(), qsizetype(text.size())));
    return std::accumulate(text.begin(), text.end(), 0.0,
        [this](double sum, char c) { return sum + widths_[std::size_t(c - first)]; });
}

} // namespace genutil
