#include "platform/qt/grid/grid_view.h"

#include "platform/qt/grid/grid_model.h"
#include "platform/qt/grid/grid_view_cells.h"
#include "platform/qt/grid/grid_view_header.h"
#include "platform/qt/tie.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace genutil {
namespace {

constexpr int roomInRow = 6; // pixels above and below the text together

} // namespace

GridView::GridView(QWidget* parent)
    : QTableView(parent), model_(new GridModel(this)), header_(new GridHeader(this)),
      cells_(new GridCells(this, *model_)) {
    const QScopedValueRollback starting(showing_, true);
    setHorizontalHeader(header_);
    connectHeader();
    setModel(model_);
    setItemDelegate(cells_);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setTabKeyNavigation(false);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(ContiguousSelection);
    setAutoScroll(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    fitRows();
    for (const QScrollBar* bar : {verticalScrollBar(), horizontalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, [this] {
            if (!showing_)
                reportScroll();
        });
}

// The grid decides what a press selects and how wide a column has to be.
void GridView::connectHeader() {
    disconnect(header_, &QHeaderView::sectionPressed, this, nullptr);
    disconnect(header_, &QHeaderView::sectionEntered, this, nullptr);
    disconnect(header_, &QHeaderView::sectionHandleDoubleClicked, this, nullptr);
    connect(header_, &QHeaderView::sectionClicked, this, [this](int column) {
        const Qt::KeyboardModifiers held = QGuiApplication::keyboardModifiers();
        act([&](Grid& grid) {
            grid.userPress(0, column,
                {.shift = held.testFlag(Qt::ShiftModifier),
                    .ctrl = held.testFlag(Qt::ControlModifier),
                    .onHeader = true});
            grid.userRelease();
        });
    });
    connect(header_, &QHeaderView::sectionMoved, this, [this](int column, int, int position) {
        if (!showing_)
            act([&](Grid& grid) { grid.userMoveColumn(column, position); });
    });
    connect(header_, &QHeaderView::sectionHandleDoubleClicked, this,
        [this](int column) { act([&](Grid& grid) { grid.userFitColumn(column); }); });
    header_->resized.connect([this](int column) {
        const double width = scale_.twips(header_->sectionSize(column) - GridCells::extraWidth);
        act([&](Grid& grid) { grid.userResizeColumn(column, width); });
    });
    header_->rightPressed.connect([this](int column, QPoint place) {
        if (grid_)
            askForMenu({0, column < 0 ? grid_->selection().column : column},
                {.button = MouseButton::Right, .onHeader = true}, place);
    });
    // What was held back while a title was held.
    header_->released.connect([this] { gridChanged(Aspect::Items); });
}

void GridView::setGrid(Grid* grid) {
    grid_ = grid;
    model_->setGrid(grid);
    cells_->setGrid(grid);
    dragging_ = false;
    dragTimer_.stop();
    itemsChanged_ = scrollChanged_ = true;
    refreshLater();
}

void GridView::gridChanged(Aspect aspect) {
    if (aspect == Aspect::Items)
        itemsChanged_ = true;
    else if (aspect == Aspect::Scroll && !showing_)
        scrollChanged_ = true;
    else if (aspect != Aspect::Value)
        return;
    refreshLater();
}

void GridView::refreshLater() {
    if (std::exchange(refreshPosted_, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            refreshPosted_ = false;
            refresh();
        },
        Qt::QueuedConnection);
}

// Shows what has changed; nothing while the view cannot be seen, which would only have to be done again.
void GridView::refresh() {
    if (!grid_ || !isVisible())
        return;
    const QScopedValueRollback showing(showing_, true);
    const bool items = std::exchange(itemsChanged_, false);
    const int top = verticalScrollBar()->value();
    const bool wasInSight = shown_.row > top && shown_.row <= top + rowsInSight();
    if (items) {
        model_->catchUp();
        showColumns();
        header_->setSortMarks(grid_->sortMark, grid_->secondSortMark);
        executeDelayedItemsLayout();
        updateGeometries();
    }
    const GridRange earlier = std::exchange(shown_, grid_->selection());
    if (items || earlier != shown_)
        showSelection();
    if (std::exchange(scrollChanged_, false))
        showScroll();
    else if (earlier != shown_)
        followSelection(earlier);
    else if (items && wasInSight)
        bringRowIntoSight(shown_.row);
    reportScroll();
}

void GridView::showColumns() {
    if (header_->isHeld()) {
        itemsChanged_ = true;
        return;
    }
    for (int column = 0; column < model_->columnCount(); ++column) {
        header_->setSectionHidden(column, !isSeen(column));
        if (isSeen(column))
            header_->resizeSection(
                column, scale_.pixelsHolding(grid_->column(column).width) + GridCells::extraWidth);
    }
    for (int position = 0; position < model_->columnCount(); ++position)
        if (const int from = header_->visualIndex(grid_->columnAt(position)); from != position)
            header_->moveSection(from, position);
}

void GridView::showSelection() {
    QItemSelection cells;
    const auto [first, last] = std::minmax(shown_.row, shown_.endRow);
    if (last > 0)
        for (const int column : grid_->columnsBetween(shown_.column, shown_.endColumn))
            cells.select(model_->index(std::max(first, 1) - 1, column), model_->index(last - 1, column));
    selectionModel()->setCurrentIndex(
        model_->index(std::max(shown_.row, 1) - 1, shown_.column), QItemSelectionModel::NoUpdate);
    selectionModel()->select(cells, QItemSelectionModel::ClearAndSelect);
    viewport()->update(); // the tint of the current row
}

void GridView::showScroll() {
    verticalScrollBar()->setValue(grid_->topRow - 1);
    if (const std::int32_t column = grid_->leftColumn; column >= 0 && column < grid_->columnCount())
        horizontalScrollBar()->setValue(header_->sectionPosition(column));
}

// Brings into sight the cell that the selection has moved to. A range that was selected at one stroke, such
// as a whole column, leaves what is seen where it is.
void GridView::followSelection(const GridRange& earlier) {
    const bool sameStart = earlier.row == shown_.row && earlier.column == shown_.column;
    const bool isCell = shown_.row == shown_.endRow && shown_.column == shown_.endColumn;
    if ((!sameStart && !isCell) || shown_.endRow == 0)
        return;
    bringRowIntoSight(shown_.endRow);
    bringColumnIntoSight(shown_.endColumn);
}

void GridView::bringRowIntoSight(std::int32_t row) {
    QScrollBar* bar = verticalScrollBar();
    bar->setValue(std::clamp(bar->value(), row - rowsInSight(), std::max(row - 1, 0)));
}

void GridView::bringColumnIntoSight(std::int32_t column) {
    if (!isSeen(column))
        return;
    QScrollBar* bar = horizontalScrollBar();
    const int left = header_->sectionPosition(column);
    const int right = left + header_->sectionSize(column);
    const int seenLeft = bar->value();
    const int seenRight = seenLeft + viewport()->width();
    const bool fits = right - left <= viewport()->width();
    if (fits)
        bar->setValue(std::clamp(seenLeft, right - viewport()->width(), left));
    else if (right <= seenLeft || left >= seenRight)
        bar->setValue(left);
}

void GridView::reportScroll() {
    if (!grid_ || itemsChanged_)
        return;
    const QScopedValueRollback reporting(showing_, true);
    grid_->topRow = verticalScrollBar()->value() + 1;
    if (const int column = columnAt(0); column >= 0)
        grid_->leftColumn = column;
}

void GridView::fitRows() {
    header_->setFont(font());
    header_->setMinimumSectionSize(GridCells::extraWidth + 1);
    const int height = fontMetrics().height() + roomInRow;
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
}

void GridView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitRows();
}

void GridView::showEvent(QShowEvent* event) {
    QTableView::showEvent(event);
    refreshLater();
}

// The toolkit makes a cell current when none is.
void GridView::focusInEvent(QFocusEvent* event) {
    const QScopedValueRollback notByUser(showing_, true);
    QTableView::focusInEvent(event);
}

// Assistive programs make a cell current this way.
void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (!showing_ && grid_ && current.isValid())
        act([&](Grid& grid) { grid.userMove(current.row() + 1, current.column(), false); });
}

void GridView::act(const std::function<void(Grid&)>& what) {
    if (!grid_)
        return;
    const QPointer<GridView> here(this);
    report(*grid_, [&, &grid = *grid_] { what(grid); });
    if (here)
        refresh();
}

bool GridView::isSeen(std::int32_t column) const {
    const Grid::Column& shown = grid_->column(column);
    return !shown.hidden && shown.width > 0;
}

std::vector<std::int32_t> GridView::seenColumns() const {
    if (grid_->columnCount() == 0)
        return {};
    auto columns = grid_->columnsBetween(grid_->columnAt(0), grid_->columnAt(grid_->columnCount() - 1));
    std::erase_if(columns, [this](std::int32_t column) { return !isSeen(column); });
    return columns;
}

int GridView::rowsInSight() const {
    return std::max(1, viewport()->height() / std::max(1, verticalHeader()->defaultSectionSize()));
}

} // namespace genutil
