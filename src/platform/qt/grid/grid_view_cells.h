#pragma once

#include "platform/qt/grid/grid_model.h"

#include <QFontMetricsF>
#include <QStyledItemDelegate>

#include <string_view>
#include <vector>

namespace genutil {

// A cell's text in one line: line ends are blanks, and each control character (text::controlMark()) is a sign
// in inverse video. What is wider than the cell ends in an ellipsis.
struct CellLine {
    struct Piece {
        QString text;
        bool isMark = false; // the text is the sign
        double width = 0;    // pixels
    };
    std::vector<Piece> pieces;
    double width = 0; // pixels
    bool isCut = false;
};

// Takes no longer for a long text than for one that fills the width.
CellLine layOutCell(std::string_view text, const QFontMetricsF& metrics, double width);

// All of a text, but of a very long one only the front, in the toolkit's rich text.
QString cellToolTip(std::string_view text);

// Paints the cells of a grid, and shows the whole text of a cell that is cut.
class GridCells : public QStyledItemDelegate {
public:
    // Pixels that are left free at both sides of a text.
    static constexpr int margin = 4;
    // What a column needs beyond the width of its texts: the margins, and the line that ends it.
    static constexpr int extraWidth = 2 * margin + 1;

    GridCells(QObject* parent, const GridModel& model) : QStyledItemDelegate(parent), model_(model) {}

    // Null for no grid.
    void setGrid(const Grid* grid) { grid_ = grid; }

    void paint(
        QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
        const QModelIndex& index) override;

private:
    const GridModel& model_;
    const Grid* grid_ = nullptr;
};

} // namespace genutil
