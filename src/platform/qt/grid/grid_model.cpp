#include "platform/qt/grid/grid_model.h"

#include "hostif/form.h"

namespace genutil {

Qt::Alignment toQt(Alignment alignment) {
    return Qt::AlignVCenter | (alignment == Alignment::Left       ? Qt::AlignLeft
                                  : alignment == Alignment::Right ? Qt::AlignRight
                                                                  : Qt::AlignHCenter);
}

void GridModel::catchUp() {
    const int rows = grid_ ? grid_->rowCount() - 1 : 0;
    const int columns = grid_ ? grid_->columnCount() : 0;
    if (columns != columns_) {
        beginResetModel();
        rows_ = rows;
        columns_ = columns;
        endResetModel();
        return;
    }
    if (rows > rows_) {
        beginInsertRows({}, rows_, rows - 1);
        rows_ = rows;
        endInsertRows();
    } else if (rows < rows_) {
        beginRemoveRows({}, rows, rows_ - 1);
        rows_ = rows;
        endRemoveRows();
    }
    // An order or a filter may have given every row another text.
    if (rows_ > 0 && columns_ > 0)
        dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
    if (columns_ > 0)
        headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

const std::string& GridModel::text(const QModelIndex& cell) const {
    static const std::string none;
    return grid_ && cell.row() + 1 < grid_->rowCount() ? grid_->text(cell.row() + 1, cell.column()) : none;
}

bool GridModel::isMarked(const QModelIndex& cell) const {
    return grid_ && cell.row() + 1 < grid_->rowCount() && grid_->rowMark.get().number > 0 &&
           grid_->rowNumber(cell.row() + 1) == grid_->rowMark.get().number;
}

QVariant GridModel::data(const QModelIndex& cell, int role) const {
    if (!checkIndex(cell, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::DisplayRole)
        return QString::fromStdString(text(cell));
    if (role == Qt::AccessibleDescriptionRole && isMarked(cell))
        return QString::fromStdString(grid_->rowMark.get().text);
    if (role == Qt::TextAlignmentRole && grid_ && cell.column() < grid_->columnCount())
        return int(toQt(grid_->column(cell.column()).alignment));
    return {};
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical || !grid_ || section < 0 || section >= grid_->columnCount())
        return {};
    const Grid::Column& column = grid_->column(section);
    if (role == Qt::DisplayRole)
        return QString::fromStdString(column.title);
    if (role == Qt::TextAlignmentRole)
        return int(toQt(column.alignment));
    // What the marks above the titles say.
    if (role == Qt::AccessibleDescriptionRole)
        for (const SortMark& mark : {grid_->sortMark.get(), grid_->secondSortMark.get()})
            if (mark.column == section)
                return mark.ascending ? QStringLiteral("sorted in ascending order")
                                      : QStringLiteral("sorted in descending order");
    // A title that is cut.
    if (role == Qt::ToolTipRole &&
        grid_->form().desktop().textWidth(grid_->font, column.title) > column.width)
        return QString::fromStdString(column.title).trimmed();
    return {};
}

Qt::ItemFlags GridModel::flags(const QModelIndex& cell) const {
    return cell.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                          : Qt::NoItemFlags;
}

} // namespace genutil
