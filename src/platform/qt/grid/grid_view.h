#pragma once

#include "hostif/grid.h"
#include "platform/qt/twip_scale.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QTableView>

#include <functional>
#include <optional>
#include <vector>

namespace genutil {

class GridCells;
class GridHeader;
class GridModel;

// Shows a grid control. The grid holds what is shown and what is selected; nothing is copied but the widths
// and the order of the columns.
class GridView : public QTableView {
public:
    explicit GridView(QWidget* parent = nullptr);

    // Shows the grid and reports the user's acts to it. Null lets go: nothing is shown then.
    void setGrid(Grid* grid);
    // An aspect of the grid has changed. It is shown with the pending events: once, however many changes
    // there were.
    void gridChanged(Aspect aspect);

    // While the user is asking for a menu: where it belongs on the screen.
    std::optional<QPoint> menuPlace() const { return menuPlace_; }

    // A row and a column of the grid.
    struct Cell {
        std::int32_t row = 0;
        std::int32_t column = 0;
    };

protected:
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void connectHeader();
    void refreshLater();
    void refresh();
    void showColumns();
    void showSelection();
    void showScroll();
    void followSelection(const GridRange& earlier);
    void bringRowIntoSight(std::int32_t row);
    void bringColumnIntoSight(std::int32_t column);
    void reportScroll();
    void fitRows();

    // Runs what the user did and shows what has come of it, if the view still has its grid then.
    void act(const std::function<void(Grid&)>& what);
    void askForMenu(Cell cell, const GridPress& press, QPoint place);
    void askForMenuByKey();

    bool isSeen(std::int32_t column) const;
    // The columns that the user sees, left to right.
    std::vector<std::int32_t> seenColumns() const;
    // So many columns further right, or left, as far as there are any.
    std::int32_t columnBeside(std::int32_t column, int steps) const;
    int rowsInSight() const; // as a whole, at least 1
    // The cell at a point of the viewport; beside the cells, the nearest one in that row. Nothing below all
    // rows.
    std::optional<Cell> cellAt(QPoint point) const;
    // Where dragging to a point leads, one step beyond what is seen when it is outside.
    Cell cellTowards(QPoint point) const;
    void dragTo(QPoint point);
    std::optional<Cell> cellForKey(const QKeyEvent& event) const;
    bool jump(const QKeyEvent& event);

    Grid* grid_ = nullptr;
    GridModel* model_;
    GridHeader* header_;
    GridCells* cells_;
    TwipScale scale_ = TwipScale::ofScreen();

    // What has not been shown yet.
    bool itemsChanged_ = false;
    bool scrollChanged_ = false;
    bool refreshPosted_ = false;
    bool showing_ = false; // what the widget reports now is not the user's act
    GridRange shown_;      // the selection as it is shown

    std::optional<QPoint> menuPlace_;
    bool dragging_ = false;
    QPoint dragPoint_;
    QBasicTimer dragTimer_;
    QString typed_;
    QElapsedTimer sinceTyped_;
};

} // namespace genutil
