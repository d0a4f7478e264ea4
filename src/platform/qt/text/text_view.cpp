#include "platform/qt/text/text_view.h"

#include "platform/qt/fonts.h"
#include "platform/qt/text/text_view_accessible.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <limits>

namespace genutil {

using text::TextPosition;

namespace {

constexpr int wheelStep = 120;       // eighths of a degree in one notch
constexpr int proseColumns = 90;     // letters "x" of a line of prose, which is hard to read when it is longer
constexpr int wrappedLineSteps = 64; // a wrapped line can be many rows: the bar counts parts of it
constexpr std::size_t shownBytes = 4096;
constexpr double smallestZoom = 0.05;
constexpr double largestZoom = 20;

} // namespace

TextView::TextView(QWidget* parent) : QAbstractScrollArea(parent) {
    installTextViewAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    // A dropped file is the window's business.
    setAcceptDrops(false);
    viewport()->setAcceptDrops(false);
    followLook();
}

void TextView::setModel(ReportText* model) {
    connections_.clear();
    model_ = model;
    if (model_) {
        connections_.push_back(model->changed.connectScoped([this](Aspect aspect) { follow(aspect); }));
        connections_.push_back(
            model->edited.connectScoped([this](const text::TextChange& change) { followEdit(change); }));
        connections_.push_back(model->selectionChanged.connectScoped([this] { followSelection(); }));
        connections_.push_back(model->sentCommand.connectScoped([this](Command what) { carryOut(what); }));
        connections_.push_back(model->sentKey.connectScoped([this](int code) { followKey(code); }));
        follow(Aspect::Font);
        follow(Aspect::Text);
        followSelection();
    }
    follow(Aspect::Locked);
}

bool TextView::isEditable() const {
    return model_ && model_->enabled && !model_->locked && !model_->isRich();
}

void TextView::follow(Aspect aspect) {
    if (aspect == Aspect::Text) {
        document_ = model_->isRich() ? std::make_shared<text::TextDocument>() : model_->document();
        ++revision_;
        top_ = anchor_ = caret_ = {};
        preedit_.clear();
        horizontalScrollBar()->setValue(0);
        renewLayout();
        accessibleTextRenewed(*this);
    } else if (aspect == Aspect::Value && !model_->isRich()) {
        followSelection();
        showRow(rows_->rowAt(model_->caret()));
        showPosition(model_->anchor());
        showPosition(model_->caret());
    } else if (aspect == Aspect::Font) {
        setFont(toQFont(model_->font));
        followLook();
    } else if (aspect == Aspect::Locked || aspect == Aspect::Enabled) {
        setAttribute(Qt::WA_InputMethodEnabled, isEditable());
        preedit_.clear();
        restartBlinking();
        viewport()->update();
    }
}

void TextView::followLook() {
    if (model_) {
        zoom_ = std::clamp(model_->zoom.get(), smallestZoom, largestZoom);
        wraps_ = model_->wrapsLines;
    }
    textFont_ = font();
    if (textFont_.pointSizeF() > 0)
        textFont_.setPointSizeF(textFont_.pointSizeF() * zoom_);
    else
        textFont_.setPixelSize(std::max(1, int(std::lround(textFont_.pixelSize() * zoom_))));
    renewLayout();
}

void TextView::followEdit(const text::TextChange& change) {
    ++revision_;
    rows_->changed(change);
    if (change.oldEnd.line < top_.line)
        top_.line += change.newEnd.line - change.oldEnd.line;
    else if (change.from < top_)
        top_ = std::min(top_, change.newEnd);
    top_ = rows_->rowAt(top_).position();
    wantedX_.reset();
    updateBars();
    viewport()->update();
    accessibleTextChanged(*this, change);
}

void TextView::followSelection() {
    if (model_->isRich())
        return;
    anchor_ = model_->anchor();
    caret_ = model_->caret();
    restartBlinking();
    viewport()->update();
    updateMicroFocus();
    accessibleCaretMoved(*this);
}

QSize TextView::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 30};
}

// A report takes the whole window; prose, which alone is set in a proportional font, a column of it.
double TextView::wrapWidth() const {
    const double room = viewport()->width() - 2 * margin();
    if (QFontInfo(textFont_).fixedPitch())
        return room;
    return std::min(room, QFontMetricsF(textFont_).horizontalAdvance(QLatin1Char('x')) * proseColumns);
}

void TextView::renewLayout() {
    rows_ = wraps_ ? makeWrappedRows(document_, textFont_, wrapWidth())
                   : makeLineRows(document_, textFont_);
    wantedX_.reset();
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
    lastTop_ = rowsAway(document_->end(), 1 - pageRows());
    top_ = std::min(top_, lastTop_);
    syncingBars_ = true;
    const int steps = wraps_ ? wrappedLineSteps : 1;
    verticalScrollBar()->setRange(0, barValue(lastTop_));
    verticalScrollBar()->setPageStep(pageRows() * steps);
    verticalScrollBar()->setSingleStep(steps);
    verticalScrollBar()->setValue(barValue(top_));
    const double hidden = wraps_ ? 0 : rows_->width() + 2 * margin() - viewport()->width();
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

// A row that is not seen comes into the upper third of the view, with the lines around it.
void TextView::showRow(const TextRow& row) {
    if (row.position() < top_ || rowsAway(row.position(), 1 - pageRows()) > top_)
        scrollTo(rowsAway(row.position(), -pageRows() / 3));
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
    else if (x + 2 * margin() > bar.value() + viewport()->width())
        bar.setValue(int(std::ceil(x + 2 * margin())) - viewport()->width());
}

int TextView::caretWidth() const {
    return std::clamp(style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this), 1, 2);
}

std::optional<QRectF> TextView::placeOf(TextPosition position) const {
    const TextRow row = rows_->rowAt(position);
    double y = 0;
    for (std::optional<TextRow> seen = rows_->rowAt(top_); seen && y < viewport()->height();
         seen = rows_->next(*seen), y += rows_->rowHeight())
        if (seen->position() == row.position()) {
            const double x = margin() + rows_->xOf(row, position.byte) - horizontalScrollBar()->value();
            return QRectF(x, y, caretWidth(), rows_->rowHeight());
        }
    return std::nullopt;
}

TextPosition TextView::positionAt(QPoint point) const {
    const int rowsDown = int(std::floor(point.y() / rows_->rowHeight()));
    const TextRow row = rows_->rowAt(rowsAway(top_, rowsDown));
    return {row.line, rows_->byteNear(row, point.x() - margin() + horizontalScrollBar()->value())};
}

QString TextView::visibleText() const {
    QStringList texts;
    std::optional<TextRow> row = rows_->rowAt(top_);
    for (int i = 0; row && i < pageRows(); ++i, row = rows_->next(*row)) {
        const std::string_view line = document_->line(row->line).substr(row->begin, row->end - row->begin);
        texts << QString::fromUtf8(line.data(), qsizetype(std::min(line.size(), shownBytes)));
    }
    return texts.join(QLatin1Char('\n'));
}

void TextView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        followLook();
    else if (event->type() == QEvent::EnabledChange)
        viewport()->update();
}

void TextView::resizeEvent(QResizeEvent* event) {
    if (wraps_ && event->oldSize().width() != event->size().width())
        renewLayout();
    else
        updateBars();
}

void TextView::wheelEvent(QWheelEvent* event) {
    const QPoint delta = event->angleDelta();
    const bool zooms = event->modifiers() & Qt::ControlModifier;
    if (!zooms && (std::abs(delta.x()) > std::abs(delta.y()) || event->modifiers() & Qt::ShiftModifier)) {
        QApplication::sendEvent(horizontalScrollBar(), event);
        return;
    }
    wheelRest_ += delta.y() * (zooms ? 1 : QApplication::wheelScrollLines());
    const int steps = wheelRest_ / wheelStep;
    wheelRest_ %= wheelStep;
    event->accept();
    if (!zooms)
        scrollRows(-steps);
    else if (steps != 0)
        zoomRequested(steps);
}

} // namespace genutil
