#include "platform/qt/text_view.h"

#include "hostif/control.h"
#include "platform/qt/text_view_accessible.h"
#include "platform/qt/virtual_keys.h"
#include "text/utf8.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace genutil {
namespace {

constexpr double margin = 3;         // pixels left of the text, and right of the widest line
constexpr int dragInterval = 40;     // milliseconds between scrolls while dragging beyond the edge
constexpr int wheelStep = 120;       // eighths of a degree in one notch
constexpr int wrappedLineSteps = 64; // a wrapped line can be many rows: the bar counts parts of it

} // namespace

TextView::TextView(QWidget* parent) : QAbstractScrollArea(parent) {
    installTextViewAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    renewLayout();
}

void TextView::setDocument(std::shared_ptr<const text::TextDocument> document) {
    document_ = std::move(document);
    top_ = anchor_ = cursor_ = {};
    horizontalScrollBar()->setValue(0);
    renewLayout();
}

void TextView::setWrapsLines(bool wraps) {
    if (std::exchange(wraps_, wraps) != wraps)
        renewLayout();
}

QSize TextView::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 30};
}

void TextView::renewLayout() {
    rows_ = wraps_ ? makeWrappedRows(document_, font(), viewport()->width() - 2 * margin)
                   : makeLineRows(document_, font());
    top_ = rows_->rowAt(top_).position();
    updateBars();
    viewport()->update();
}

int TextView::pageRows() const {
    return std::max(1, int(viewport()->height() / rows_->rowHeight()));
}

TextPosition TextView::rowsAway(TextPosition from, int count) const {
    if (!wraps_) {
        const auto last = std::int64_t(document_->lineCount()) - 1;
        return {std::size_t(std::clamp(std::int64_t(from.line) + count, std::int64_t(0), last)), 0};
    }
    TextRow row = rows_->rowAt(from);
    for (; count != 0; count += count < 0 ? 1 : -1) {
        const auto neighbour = count < 0 ? rows_->previous(row) : rows_->next(row);
        if (!neighbour)
            break;
        row = *neighbour;
    }
    return row.position();
}

int TextView::barValue(TextPosition position) const {
    const double steps = wraps_ ? wrappedLineSteps : 1;
    const double size = double(std::max<std::size_t>(1, document_->line(position.line).size()));
    const double value = (double(position.line) + double(position.byte) / size) * steps;
    return int(std::min(value, double(std::numeric_limits<int>::max() - 1)));
}

void TextView::updateBars() {
    lastTop_ = rowsAway(rows_->end(), 1 - pageRows());
    top_ = std::min(top_, lastTop_);
    syncingBars_ = true;
    const int steps = wraps_ ? wrappedLineSteps : 1;
    verticalScrollBar()->setRange(0, barValue(lastTop_));
    verticalScrollBar()->setPageStep(pageRows() * steps);
    verticalScrollBar()->setSingleStep(steps);
    verticalScrollBar()->setValue(barValue(top_));
    const double hidden = wraps_ ? 0 : rows_->width() + 2 * margin - viewport()->width();
    horizontalScrollBar()->setRange(0, int(std::clamp(std::ceil(hidden), 0.0, 2e9)));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(fontMetrics().averageCharWidth() * 4);
    syncingBars_ = false;
}

void TextView::scrollTo(TextPosition top) {
    top_ = std::min(top, lastTop_);
    syncingBars_ = true;
    verticalScrollBar()->setValue(barValue(top_));
    syncingBars_ = false;
    viewport()->update();
}

void TextView::scrollRows(int rows) {
    scrollTo(rowsAway(top_, rows));
}

void TextView::scrollContentsBy(int, int dy) {
    if (syncingBars_)
        return;
    if (dy != 0) {
        const int steps = wraps_ ? wrappedLineSteps : 1;
        const auto line = std::size_t(verticalScrollBar()->value() / steps);
        const auto part = std::size_t(verticalScrollBar()->value() % steps);
        const std::size_t byte = document_->line(line).size() * part / std::size_t(steps);
        top_ = std::min(rows_->rowAt({line, byte}).position(), lastTop_);
    }
    viewport()->update();
}

void TextView::showPosition(TextPosition position) {
    const TextRow row = rows_->rowAt(position);
    if (row.position() < top_)
        scrollTo(row.position());
    else if (const TextPosition top = rowsAway(row.position(), 1 - pageRows()); top > top_)
        scrollTo(top);
    const double x = rows_->xOf(row, position.byte);
    QScrollBar& bar = *horizontalScrollBar();
    if (x < bar.value())
        bar.setValue(int(x));
    else if (x + 2 * margin > bar.value() + viewport()->width())
        bar.setValue(int(x + 2 * margin) - viewport()->width());
}

bool TextView::followKey(int code, bool extends) {
    static constexpr int scrollKeys[] = {key::Up, key::Down, key::PageUp, key::PageDown, key::Home, key::End,
        virtualkey::Left, virtualkey::Right};
    if (std::ranges::find(scrollKeys, code) == std::end(scrollKeys))
        return false;
    if (extends) {
        moveCursor(code);
        return true;
    }
    const int page = std::max(1, pageRows() - 1);
    switch (code) {
    case key::Up:
        scrollRows(-1);
        break;
    case key::Down:
        scrollRows(1);
        break;
    case key::PageUp:
        scrollRows(-page);
        break;
    case key::PageDown:
        scrollRows(page);
        break;
    case key::Home:
        scrollTo({});
        break;
    case key::End:
        scrollTo(lastTop_);
        break;
    default:
        horizontalScrollBar()->triggerAction(
            code == virtualkey::Left ? QScrollBar::SliderSingleStepSub : QScrollBar::SliderSingleStepAdd);
    }
    return true;
}

void TextView::moveCursor(int code) {
    const TextRow row = rows_->rowAt(cursor_);
    const double x = rows_->xOf(row, cursor_.byte);
    const auto vertically = [&](int count) {
        const TextRow target = rows_->rowAt(rowsAway(cursor_, count));
        return TextPosition{target.line, rows_->byteNear(target, x)};
    };
    const auto character = [&](std::size_t byte) {
        return text::decodeUtf8(document_->line(cursor_.line), byte);
    };
    switch (code) {
    case key::Up:
        cursor_ = vertically(-1);
        break;
    case key::Down:
        cursor_ = vertically(1);
        break;
    case key::PageUp:
        cursor_ = vertically(1 - pageRows());
        break;
    case key::PageDown:
        cursor_ = vertically(pageRows() - 1);
        break;
    case key::Home:
        cursor_ = {};
        break;
    case key::End:
        cursor_ = rows_->end();
        break;
    case virtualkey::Right:
        if (const auto next = character(cursor_.byte); next.length > 0)
            cursor_.byte += next.length;
        else if (cursor_.line + 1 < document_->lineCount())
            cursor_ = {cursor_.line + 1, 0};
        break;
    default:
        if (cursor_.byte > 0) {
            const std::string_view line = document_->line(cursor_.line);
            do
                --cursor_.byte;
            while (cursor_.byte > 0 && (line[cursor_.byte] & 0xC0) == 0x80);
        } else if (cursor_.line > 0) {
            cursor_ = {cursor_.line - 1, document_->line(cursor_.line - 1).size()};
        }
    }
    showPosition(cursor_);
    viewport()->update();
}

void TextView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        if (anchor_ != cursor_)
            QApplication::clipboard()->setText(selectedText());
    } else if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (!followKey(virtualKey(event->key()), event->modifiers() & Qt::ShiftModifier)) {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

bool TextView::event(QEvent* event) {
    // Tells the window's menu that these are keys of the view while it has the focus.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* pressed = static_cast<QKeyEvent*>(event);
        if (pressed->matches(QKeySequence::Copy) || pressed->matches(QKeySequence::SelectAll)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void TextView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        renewLayout();
}

void TextView::resizeEvent(QResizeEvent* event) {
    if (wraps_ && event->oldSize().width() != event->size().width())
        renewLayout();
    else
        updateBars();
}

void TextView::wheelEvent(QWheelEvent* event) {
    const QPoint delta = event->angleDelta();
    if (std::abs(delta.x()) > std::abs(delta.y()) || event->modifiers() & Qt::ShiftModifier) {
        QApplication::sendEvent(horizontalScrollBar(), event);
        return;
    }
    wheelRest_ += delta.y() * QApplication::wheelScrollLines();
    scrollRows(-(wheelRest_ / wheelStep));
    wheelRest_ %= wheelStep;
    event->accept();
}

TextPosition TextView::positionAt(QPoint point) const {
    const int rowsDown = int(std::floor(point.y() / rows_->rowHeight()));
    const TextRow row = rows_->rowAt(rowsAway(top_, rowsDown));
    return {row.line, rows_->byteNear(row, point.x() - margin + horizontalScrollBar()->value())};
}

void TextView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    cursor_ = positionAt(event->pos());
    if (!(event->modifiers() & Qt::ShiftModifier))
        anchor_ = cursor_;
    viewport()->update();
}

void TextView::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    dragTo(event->pos());
    if (viewport()->rect().contains(event->pos()))
        dragTimer_.stop();
    else if (!dragTimer_.isActive())
        dragTimer_.start(dragInterval, this);
}

void TextView::mouseReleaseEvent(QMouseEvent*) {
    dragTimer_.stop();
}

void TextView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == dragTimer_.timerId())
        dragTo(viewport()->mapFromGlobal(QCursor::pos()));
    else
        QAbstractScrollArea::timerEvent(event);
}

void TextView::dragTo(QPoint point) {
    cursor_ = positionAt(point);
    showPosition(cursor_);
    viewport()->update();
}

void TextView::selectAll() {
    anchor_ = {};
    cursor_ = rows_->end();
    viewport()->update();
}

QString TextView::selectedText() const {
    const auto [from, to] = std::minmax(anchor_, cursor_);
    std::string selected;
    for (std::size_t line = from.line; line <= to.line; ++line) {
        const std::string_view whole = document_->line(line);
        const std::size_t begin = line == from.line ? from.byte : 0;
        const std::size_t end = line == to.line ? to.byte : whole.size();
        selected.append(whole.substr(begin, end - begin)).append(line < to.line ? "\n" : "");
    }
    return QString::fromStdString(selected);
}

QString TextView::visibleText() const {
    QStringList texts;
    std::optional<TextRow> row = rows_->rowAt(top_);
    for (int i = 0; row && i < pageRows(); ++i, row = rows_->next(*row)) {
        const std::string_view line = document_->line(row->line).substr(row->begin, row->end - row->begin);
        texts << QString::fromUtf8(line.data(), qsizetype(std::min<std::size_t>(line.size(), 4096)));
    }
    return texts.join(QLatin1Char('\n'));
}

void TextView::paintRow(QPainter& painter, const TextRow& row, double y) const {
    const double x = margin - horizontalScrollBar()->value();
    const double right = viewport()->width();
    const bool dimmed = !isEnabled();
    painter.setPen(palette().color(dimmed ? QPalette::Disabled : QPalette::Active, QPalette::Text));
    rows_->paint(painter, row, x, y, 0, right);

    const auto [from, to] = std::minmax(anchor_, cursor_);
    if (from == to || to < row.position() || from > TextPosition{row.line, row.end})
        return;
    const double begin = from <= row.position() ? 0 : rows_->xOf(row, from.byte);
    // A selected line end shows as one more column.
    const bool past = to > TextPosition{row.line, row.end};
    const double end =
        rows_->xOf(row, past ? row.end : to.byte) + (past ? fontMetrics().averageCharWidth() : 0);
    const QRectF selected(x + begin, y, end - begin, rows_->rowHeight());
    painter.save();
    painter.setClipRect(selected);
    const auto group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    painter.fillRect(selected, palette().color(group, QPalette::Highlight));
    painter.setPen(palette().color(group, QPalette::HighlightedText));
    rows_->paint(painter, row, x, y, std::max(0.0, x + begin), std::min(right, x + end));
    painter.restore();
}

void TextView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setFont(font());
    const double width = rows_->width();
    double y = 0;
    std::optional<TextRow> row = rows_->rowAt(top_);
    for (; row && y <= event->rect().bottom(); row = rows_->next(*row), y += rows_->rowHeight())
        if (y + rows_->rowHeight() >= event->rect().top())
            paintRow(painter, *row, y);
    // In a proportional font a wider line may have come into view.
    if (rows_->width() > width)
        QMetaObject::invokeMethod(
            this, [this] { updateBars(); }, Qt::QueuedConnection);
}

} // namespace genutil
