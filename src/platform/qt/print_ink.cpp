#include "platform/qt/print_ink.h"

#include "platform/qt/character_steps.h"
#include "platform/qt/row_layout.h"
#include "text/character_width.h"

#include <QPainter>

#include <algorithm>

namespace genutil {
namespace {

// One past the printable ASCII from `begin` on, or past the one other character there with its marks.
std::size_t togetherFrom(std::string_view text, std::size_t begin, std::size_t limit) {
    std::size_t end = begin;
    while (end < limit && text[end] >= ' ' && text[end] <= '~')
        ++end;
    // A mark that follows belongs to the last of them.
    if (end > begin && (end == text.size() || nextCharacter(text, end - 1) == end))
        return end;
    return end > begin + 1 ? end - 1 : std::min(nextCharacter(text, begin), limit);
}

} // namespace

PrintInk::PrintInk(const QFont& font, QPaintDevice* device)
    : font_(font, device), metrics_(font_, device), columnWidth_(metrics_.horizontalAdvance(QChar(u'x'))) {}

double PrintInk::width(std::string_view text) const {
    return double(text::columnsOf(text)) * columnWidth_;
}

void PrintInk::paint(QPainter& painter, const QPointF& at, double right, const PrintedLine& line) const {
    painter.setFont(font_);
    auto mark = line.marks.begin();
    std::size_t column = 0;
    for (std::size_t byte = 0; byte < line.text.size();) {
        const QPointF place = at + QPointF(double(column) * columnWidth_, 0);
        if (place.x() > right)
            return;
        if (mark != line.marks.end() && *mark == byte) {
            paintControlMark(painter, line.text[byte], QRectF(place, QSizeF(columnWidth_, lineHeight())),
                {Qt::black, Qt::white});
            ++mark;
            ++byte;
            ++column;
            continue;
        }
        const std::size_t limit = mark == line.marks.end() ? line.text.size() : *mark;
        const std::size_t end = togetherFrom(line.text, byte, limit);
        // No run longer than a sheet holds: a line may have no end.
        const auto fitting = std::size_t(std::max(1.0, (right - place.x()) / columnWidth_ + 2));
        const bool isPlain = line.text[byte] >= ' ' && line.text[byte] <= '~';
        const std::string_view shown =
            std::string_view(line.text).substr(byte, isPlain ? std::min(end - byte, fitting) : end - byte);
        painter.drawText(
            place + QPointF(0, metrics_.ascent()), QString::fromUtf8(shown.data(), qsizetype(shown.size())));
        column += text::columnsOf(shown);
        byte += shown.size();
    }
}

} // namespace genutil
