#pragma once

#include "hostif/event.h"
#include "hostif/grid.h"

#include <QHeaderView>

#include <optional>

namespace genutil {

// The titles of a grid: columns can be moved and resized. A mark in one of them shows the order of the rows,
// a hollow one that among rows with equal texts.
class GridHeader : public QHeaderView {
public:
    explicit GridHeader(QWidget* parent);

    void setSortMarks(const SortMark& mark, const SortMark& second);
    // The user holds a title or a border: columns should stay as they are.
    bool isHeld() const { return held_; }

    Event<int> resized;              // by the user, once he has let go of the border
    Event<int, QPoint> rightPressed; // a title, or -1 beside all of them, and the place on the screen
    Event<> released;

    QSize sizeHint() const override;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintSection(QPainter* painter, const QRect& place, int section) const override;

private:
    void paintMark(QPainter& painter, const QRect& place, bool isUp, bool isHollow) const;

    SortMark mark_, second_;
    bool held_ = false;
    std::optional<int> resizedSection_;
};

} // namespace genutil
