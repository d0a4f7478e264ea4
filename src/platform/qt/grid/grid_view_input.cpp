// What the user does with the mouse and the keyboard.
#include "platform/qt/grid/grid_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPointer>

#include <algorithm>

namespace genutil {
namespace {

constexpr int dragPause = 60; // milliseconds between two steps while a drag stays outside

std::optional<MouseButton> buttonOf(const QMouseEvent& event) {
    switch (event.button()) {
    case Qt::LeftButton:
        return MouseButton::Left;
    case Qt::RightButton:
        return MouseButton::Right;
    case Qt::MiddleButton:
        return MouseButton::Middle;
    default:
        return std::nullopt;
    }
}

// The keys that ask for the menu of what is selected.
bool isMenuKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

} // namespace

std::optional<GridView::Cell> GridView::cellAt(QPoint point) const {
    const int row = rowAt(point.y());
    const auto seen = seenColumns();
    if (row < 0 || seen.empty())
        return std::nullopt;
    const int column = columnAt(point.x());
    return Cell{row + 1, column >= 0 ? column : point.x() < 0 ? seen.front() : seen.back()};
}

GridView::Cell GridView::cellTowards(QPoint point) const {
    const QRect inside = viewport()->rect();
    const int height = std::max(1, verticalHeader()->defaultSectionSize());
    const QPoint edge(std::clamp(point.x(), inside.left(), inside.right()),
        std::clamp(point.y(), inside.top(), inside.bottom()));
    const Cell last{grid_->rowCount() - 1, grid_->selection().endColumn};
    Cell cell = cellAt(edge).value_or(last);
    // The further outside, the faster.
    if (const int beyond = point.y() - edge.y())
        cell.row += beyond / height + (beyond > 0 ? 1 : -1);
    if (const int beyond = point.x() - edge.x())
        cell.column = columnBeside(cell.column, beyond > 0 ? 1 : -1);
    cell.row = std::clamp(cell.row, std::min(1, last.row), last.row);
    return cell;
}

std::int32_t GridView::columnBeside(std::int32_t column, int steps) const {
    const auto seen = seenColumns();
    if (seen.empty())
        return column;
    const auto from = std::ranges::find(seen, column) - seen.begin();
    return seen[std::size_t(std::clamp<std::ptrdiff_t>(from + steps, 0, std::ptrdiff_t(seen.size()) - 1))];
}

void GridView::mousePressEvent(QMouseEvent* event) {
    refresh();
    const auto button = buttonOf(*event);
    if (!grid_ || !button)
        return;
    auto cell = cellAt(event->position().toPoint());
    if (*button == MouseButton::Right) {
        const GridRange& now = grid_->selection();
        askForMenu(
            cell.value_or(Cell{now.row, now.column}), {.button = *button}, event->globalPosition().toPoint());
        return;
    }
    if (!cell)
        return;
    dragging_ = *button == MouseButton::Left;
    act([&](Grid& grid) {
        grid.userPress(cell->row, cell->column,
            {.button = *button,
                .shift = event->modifiers().testFlag(Qt::ShiftModifier),
                .ctrl = event->modifiers().testFlag(Qt::ControlModifier)});
    });
}

void GridView::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton))
        dragging_ = false; // let go while something else had the mouse
    if (!dragging_ || !grid_) {
        dragTimer_.stop();
        return;
    }
    dragPoint_ = event->position().toPoint();
    if (viewport()->rect().contains(dragPoint_))
        dragTimer_.stop();
    else if (!dragTimer_.isActive())
        dragTimer_.start(dragPause, this);
    dragTo(dragPoint_);
}

void GridView::dragTo(QPoint point) {
    refresh();
    const Cell cell = cellTowards(point);
    const GridRange& now = grid_->selection();
    if (cell.row != now.endRow || cell.column != now.endColumn)
        act([&](Grid& grid) { grid.userMove(cell.row, cell.column, true); });
}

void GridView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != dragTimer_.timerId())
        QTableView::timerEvent(event);
    else if (dragging_ && grid_)
        dragTo(dragPoint_);
    else
        dragTimer_.stop();
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !dragging_)
        return;
    dragging_ = false;
    dragTimer_.stop();
    act([](Grid& grid) { grid.userRelease(); });
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        mousePressEvent(event);
    else if (cellAt(event->position().toPoint()))
        act([](Grid& grid) { grid.userDoubleClick(); });
}

void GridView::askForMenu(Cell cell, const GridPress& press, QPoint place) {
    const QPointer<GridView> here(this);
    menuPlace_ = place;
    act([&](Grid& grid) { grid.userPress(cell.row, cell.column, press); });
    if (here)
        menuPlace_.reset();
}

// A menu that the mouse asks for has come with the press.
void GridView::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (event->reason() == QContextMenuEvent::Keyboard)
        askForMenuByKey();
}

void GridView::askForMenuByKey() {
    refresh();
    if (!grid_)
        return;
    const GridRange& now = grid_->selection();
    const QRect cell = visualRect(model()->index(std::max(now.row, 1) - 1, now.column));
    const QPoint place = cell.intersected(viewport()->rect()).bottomLeft();
    askForMenu({now.row, now.column}, {.button = MouseButton::Right}, viewport()->mapToGlobal(place));
}

void GridView::keyPressEvent(QKeyEvent* event) {
    refresh();
    event->setAccepted(grid_ != nullptr);
    if (!grid_)
        return;
    if (isMenuKey(*event))
        askForMenuByKey();
    else if (const auto cell = cellForKey(*event))
        act([&](Grid& grid) {
            grid.userMove(cell->row, cell->column, event->modifiers().testFlag(Qt::ShiftModifier));
        });
    else
        event->setAccepted(jump(*event));
}

std::optional<GridView::Cell> GridView::cellForKey(const QKeyEvent& event) const {
    const auto held = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const bool toTheEnds = held == Qt::ControlModifier;
    const auto seen = seenColumns();
    const std::int32_t rows = grid_->rowCount() - 1;
    if ((held && !toTheEnds) || seen.empty() || rows == 0)
        return std::nullopt;

    const GridRange& now = grid_->selection();
    Cell cell{now.row, now.column};
    if (event.modifiers().testFlag(Qt::ShiftModifier))
        cell = {now.endRow, now.endColumn};
    const std::int32_t page = std::max(1, rowsInSight() - 1);
    const auto moved = [&](std::int32_t down, int right) {
        return Cell{std::clamp(cell.row + down, 1, rows),
            right == 0 ? cell.column : columnBeside(cell.column, right)};
    };
    if (event.key() == Qt::Key_Home)
        return Cell{toTheEnds ? 1 : std::max(cell.row, 1), seen.front()};
    if (event.key() == Qt::Key_End)
        return Cell{toTheEnds ? rows : std::max(cell.row, 1), seen.back()};
    if (toTheEnds)
        return std::nullopt;
    switch (event.key()) {
    case Qt::Key_Up:
        return moved(-1, 0);
    case Qt::Key_Down:
        return moved(1, 0);
    case Qt::Key_PageUp:
        return moved(-page, 0);
    case Qt::Key_PageDown:
        return moved(page, 0);
    case Qt::Key_Left:
        return moved(0, -1);
    case Qt::Key_Right:
        return moved(0, 1);
    default:
        return std::nullopt;
    }
}

// Typing leads to the next row that begins with what was typed without a pause; the same letter over and over
// leads from one row that begins with it to the next.
bool GridView::jump(const QKeyEvent& event) {
    const QString text = event.text();
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) || text.isEmpty() ||
        !text.front().isPrint())
        return false;
    if (!sinceTyped_.isValid() || sinceTyped_.elapsed() > QApplication::keyboardInputInterval())
        typed_.clear();
    if (typed_.isEmpty() && text.front().isSpace())
        return false;
    sinceTyped_.start();
    typed_ += text;
    act([&](Grid& grid) {
        const bool found = grid.userJumpTo(typed_.toStdString());
        if (!found && typed_.count(typed_.front()) == typed_.size())
            grid.userJumpTo(text.toStdString());
    });
    return true;
}

} // namespace genutil
