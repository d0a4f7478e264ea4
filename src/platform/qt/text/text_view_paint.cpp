// What is seen: the rows, the selection, the caret and what is being composed at it.
#include "platform/qt/text/text_view.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPaintEvent>
#include <QScrollBar>
#include <QStyleHints>

#include <algorithm>
#include <cmath>

namespace genutil {

using text::TextPosition;

void TextView::paintRow(QPainter& painter, const TextRow& row, double y) const {
    const double x = margin() - horizontalScrollBar()->value();
    const double right = viewport()->width();
    const auto plainGroup = isEnabled() ? QPalette::Active : QPalette::Disabled;
    rows_->paint(painter, row, x, y, 0, right,
        {palette().color(plainGroup, QPalette::Text), palette().color(plainGroup, QPalette::Base)});

    const TextPosition from = std::max(std::min(anchor_, caret_), row.position());
    const TextPosition to = std::max(anchor_, caret_);
    // A selected line end shows as one more column.
    const bool past = to > row.last() && row.end == document_->line(row.line).size();
    if (from > row.last() || to < from || (from == to && !past))
        return;
    auto spans = rows_->spansOf(row, from.byte, std::min(to, row.last()).byte);
    if (past) {
        const double end = rows_->xOf(row, row.end);
        spans.push_back({end, end + QFontMetricsF(textFont_).averageCharWidth()});
    }
    const auto group = !isEnabled() ? QPalette::Disabled : hasFocus() ? QPalette::Active : QPalette::Inactive;
    const TextInk ink{
        palette().color(group, QPalette::HighlightedText), palette().color(group, QPalette::Highlight)};
    painter.save();
    for (const RowSpan& span : spans) {
        const double left = std::max(0.0, x + span.left);
        const QRectF selected(left, y, std::min(right, x + span.right) - left, rows_->rowHeight());
        if (selected.width() <= 0)
            continue;
        painter.setClipRect(selected);
        painter.fillRect(selected, ink.paper);
        rows_->paint(painter, row, x, y, selected.left(), selected.right(), ink);
    }
    painter.restore();
}

void TextView::paintPreedit(QPainter& painter) const {
    const auto place = placeOf(caret_);
    if (!place)
        return;
    QFont underlined = textFont_;
    underlined.setUnderline(true);
    const QFontMetricsF metrics(underlined);
    // It covers what stands behind the caret for as long as it is being composed.
    const QRectF covered(place->topLeft(), QSizeF(metrics.horizontalAdvance(preedit_), rows_->rowHeight()));
    painter.fillRect(covered, palette().base());
    painter.setPen(palette().color(QPalette::Text));
    painter.setFont(underlined);
    painter.drawText(QPointF(covered.left(), covered.top() + std::round(metrics.ascent())), preedit_);
    const double before = metrics.horizontalAdvance(preedit_.left(preeditCaret_));
    painter.fillRect(place->translated(before, 0), palette().text());
}

void TextView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setFont(textFont_);
    const double width = rows_->width();
    double y = 0;
    std::optional<TextRow> row = rows_->rowAt(top_);
    for (; row && y <= event->rect().bottom(); row = rows_->next(*row), y += rows_->rowHeight())
        if (y + rows_->rowHeight() >= event->rect().top())
            paintRow(painter, *row, y);
    if (!preedit_.isEmpty())
        paintPreedit(painter);
    else if (const auto place = caretIsLit_ && showsCaret() ? placeOf(caret_) : std::nullopt)
        painter.fillRect(*place, palette().text());
    // In a proportional font a wider line may have come into view.
    if (rows_->width() > width)
        QMetaObject::invokeMethod(
            this, [this] { updateBars(); }, Qt::QueuedConnection);
}

bool TextView::showsCaret() const {
    return hasFocus() && isEditable();
}

// The caret is lit whenever something has happened at it.
void TextView::restartBlinking() {
    const int time = QGuiApplication::styleHints()->cursorFlashTime();
    caretIsLit_ = true;
    if (showsCaret() && time > 0)
        blinkTimer_.start(time / 2, this);
    else
        blinkTimer_.stop();
}

void TextView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    restartBlinking();
    viewport()->update();
}

void TextView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    restartBlinking();
    viewport()->update();
}

} // namespace genutil
