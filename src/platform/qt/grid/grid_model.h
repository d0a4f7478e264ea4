#pragma once

#include "hostif/grid.h"

#include <QAbstractTableModel>

namespace genutil {

// The rows of a grid below its header: row r here is the grid's row r + 1. It has as many rows and columns as
// the grid had when catchUp() was called last; texts are read from the grid whenever they are asked for.
class GridModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    // Null for no grid: nothing has a text then.
    void setGrid(const Grid* grid) { grid_ = grid; }
    // Tells its views what has become of the grid's rows and columns.
    void catchUp();

    // "" for a cell that the grid does not have any more.
    const std::string& text(const QModelIndex& cell) const;

    // Whether the cell's row is the one that stands out.
    bool isMarked(const QModelIndex& cell) const;

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }
    QVariant data(const QModelIndex& cell, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& cell) const override;

private:
    const Grid* grid_ = nullptr;
    int rows_ = 0;
    int columns_ = 0;
};

// Where the texts of a column stand in their cells.
Qt::Alignment toQt(Alignment alignment);

} // namespace genutil
