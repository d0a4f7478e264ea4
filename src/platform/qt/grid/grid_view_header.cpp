#include "platform/qt/grid/grid_view_header.h"

#include "platform/qt/grid/grid_view_cells.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyleOptionHeaderV2>

#include <utility>

namespace genutil {
namespace {

constexpr int markHeight = 4; // pixels; it is twice as wide
constexpr int roomForMark = 10;

} // namespace

GridHeader::GridHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(true);
    setSectionsMovable(true);
    setHighlightSections(false);
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QHeaderView::sectionResized, this, [this](int section) {
        if (held_)
            resizedSection_ = section;
    });
}

void GridHeader::setSortMarks(const SortMark& mark, const SortMark& second) {
    mark_ = mark;
    second_ = second;
    viewport()->update();
}

QSize GridHeader::sizeHint() const {
    return {QHeaderView::sizeHint().width(), fontMetrics().height() + roomForMark};
}

void GridHeader::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        event->accept();
        rightPressed(logicalIndexAt(event->position().toPoint()), event->globalPosition().toPoint());
        return;
    }
    held_ = event->button() == Qt::LeftButton;
    resizedSection_.reset();
    QHeaderView::mousePressEvent(event);
}

void GridHeader::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton))
        held_ = false; // let go while something else had the mouse
    QHeaderView::mouseMoveEvent(event);
}

void GridHeader::mouseReleaseEvent(QMouseEvent* event) {
    const QPointer<GridHeader> here(this);
    QHeaderView::mouseReleaseEvent(event);
    if (!here || event->button() != Qt::LeftButton)
        return;
    held_ = false;
    if (const auto section = std::exchange(resizedSection_, std::nullopt))
        resized(*section);
    if (here)
        released();
}

// A press has told all that there is to tell.
void GridHeader::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
}

void GridHeader::paintSection(QPainter* painter, const QRect& place, int section) const {
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    initStyleOptionForIndex(&option, section);
    option.rect = place;
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
    // The title stands where the texts below it do.
    option.rect = place.adjusted(GridCells::margin, 0, -GridCells::margin - 1, 0);
    option.text = fontMetrics().elidedText(
        model()->headerData(section, Qt::Horizontal).toString(), Qt::ElideRight, option.rect.width());
    style()->drawControl(QStyle::CE_HeaderLabel, &option, painter, this);
    if (section == mark_.column)
        paintMark(*painter, place, mark_.ascending, false);
    else if (section == second_.column)
        paintMark(*painter, place, second_.ascending, true);
}

// Above the title, so that no title is cut for it.
void GridHeader::paintMark(QPainter& painter, const QRect& place, bool isUp, bool isHollow) const {
    const double middle = place.center().x() + 0.5;
    const double point = place.top() + (isUp ? 1 : 1 + markHeight);
    const double base = place.top() + (isUp ? 1 + markHeight : 1);
    const QColor ink = palette().color(QPalette::ButtonText);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isHollow ? QPen(ink) : QPen(Qt::NoPen));
    painter.setBrush(isHollow ? QBrush(Qt::NoBrush) : QBrush(ink));
    painter.drawPolygon(QPolygonF{{middle - markHeight, base}, {middle + markHeight, base}, {middle, point}});
    painter.restore();
}

} // namespace genutil
