#include "platform/qt/text/row_layout.h"

#include <QPainter>

namespace genutil {

void paintControlMark(QPainter& painter, char sign, const QRectF& column, const TextInk& ink) {
    // A gap on all sides tells marks from each other and from a selection.
    painter.fillRect(column.adjusted(0.5, 1, -0.5, -1), ink.text);
    painter.setPen(ink.paper);
    painter.drawText(column, Qt::AlignCenter | Qt::TextDontClip, QString(QLatin1Char(sign)));
    painter.setPen(ink.text);
}

std::optional<TextRow> RowLayout::next(const TextRow& row) {
    if (row.end < document_->line(row.line).size())
        return rowAt({row.line, row.end});
    if (row.line + 1 < document_->lineCount())
        return rowAt({row.line + 1, 0});
    return std::nullopt;
}

std::optional<TextRow> RowLayout::previous(const TextRow& row) {
    if (row.begin > 0)
        return rowAt({row.line, row.begin - 1});
    if (row.line > 0)
        return rowAt({row.line - 1, document_->line(row.line - 1).size()});
    return std::nullopt;
}

std::vector<RowSpan> RowLayout::spansOf(const TextRow& row, std::size_t begin, std::size_t end) {
    return {{xOf(row, begin), xOf(row, end)}};
}

} // namespace genutil
