#include "platform/qt/grid/grid_view_cells.h"

#include "platform/qt/text/row_layout.h"
#include "text/control_mark.h"
#include "text/utf8.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace genutil {
namespace {

constexpr QChar ellipsis(0x2026);
constexpr std::size_t longestToolTip = 2000; // characters

// The first characters of a text, at most so many.
std::string_view frontOf(std::string_view text, std::size_t characters) {
    if (text.size() <= characters)
        return text;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (!text::isContinuation(text[at]) && characters-- == 0)
            return text.substr(0, at);
    return text;
}

// The text in pieces of what shows itself and signs for what does not.
std::vector<CellLine::Piece> piecesOf(std::string_view text) {
    std::vector<CellLine::Piece> pieces;
    std::string plain;
    const auto endPlain = [&] {
        if (!plain.empty())
            pieces.push_back({QString::fromStdString(plain)});
        plain.clear();
    };
    for (std::size_t at = 0; at < text.size();) {
        const text::DecodedCharacter next = text::decodeUtf8(text, at);
        if (next.codePoint == '\r' || next.codePoint == '\n') {
            const bool pair = text.substr(at).starts_with("\r\n");
            plain += ' ';
            at += pair ? 2 : 1;
            continue;
        }
        if (const char sign = text::controlMark(next.codePoint)) {
            endPlain();
            pieces.push_back({QString(QLatin1Char(sign)), true});
        } else {
            text::appendUtf8(plain, next.codePoint);
        }
        at += next.length;
    }
    endPlain();
    return pieces;
}

QColor between(const QColor& a, const QColor& b, double share) {
    const auto mix = [share](int from, int to) { return int(from + (to - from) * share); };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

void paintLine(QPainter& painter, const CellLine& line, const QRectF& place, const TextInk& ink) {
    QRectF rest = place;
    for (const CellLine::Piece& piece : line.pieces) {
        if (piece.isMark) {
            paintControlMark(painter, piece.text[0].toLatin1(),
                {rest.left(), rest.top(), piece.width, rest.height()}, ink);
        } else {
            painter.setPen(ink.text);
            painter.drawText(rest, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, piece.text);
        }
        rest.setLeft(rest.left() + piece.width);
    }
}

// A bar at the cell's left edge, in the margin that no text needs: it is seen in one colour, too.
void paintRowMark(QPainter& painter, const QRect& cell, const QColor& ink) {
    constexpr int width = 2;
    painter.fillRect(QRect(cell.left() + 1, cell.top() + 2, width, cell.height() - 4), ink);
}

// Cells of the row that stands out are bold where there is room.
std::pair<CellLine, QFont> layOutMarked(
    std::string_view text, const QFont& font, double width, bool isMarked) {
    if (isMarked) {
        QFont bold = font;
        bold.setBold(true);
        if (CellLine line = layOutCell(text, QFontMetricsF(bold), width); !line.isCut)
            return {std::move(line), bold};
    }
    return {layOutCell(text, QFontMetricsF(font), width), font};
}

} // namespace

CellLine layOutCell(std::string_view text, const QFontMetricsF& metrics, double width) {
    // Hardly a character is narrower than a pixel.
    const std::string_view front = frontOf(text, std::size_t(std::max(width, 0.0)) + 2);

    CellLine line;
    line.isCut = front.size() < text.size();
    for (CellLine::Piece& piece : piecesOf(front)) {
        piece.width = metrics.horizontalAdvance(piece.text) + (piece.isMark ? 2 : 0);
        const double room = width - line.width;
        const bool fits = piece.width <= room + 1e-6;
        if (!fits) {
            piece.text =
                piece.isMark ? QString(ellipsis) : metrics.elidedText(piece.text, Qt::ElideRight, room);
            piece.isMark = false;
            piece.width = metrics.horizontalAdvance(piece.text);
            line.isCut = true;
        }
        line.width += piece.width;
        line.pieces.push_back(std::move(piece));
        if (!fits)
            break;
    }
    return line;
}

QString cellToolTip(std::string_view text) {
    const std::string_view front = frontOf(text, longestToolTip);
    QString words;
    for (const CellLine::Piece& piece : piecesOf(front)) {
        const QString shown = piece.text.toHtmlEscaped();
        words += piece.isMark ? QLatin1String("<span style='color:white;background:black'>") + shown +
                                    QLatin1String("</span>")
                              : shown;
    }
    if (front.size() < text.size())
        words += ellipsis;
    return QLatin1String("<p style='white-space:pre-wrap'>") + words + QLatin1String("</p>");
}

void GridCells::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    if (!grid_ || index.column() >= grid_->columnCount())
        return;
    const GridRange& selection = grid_->selection();
    const bool isCurrentRow = selection.row == index.row() + 1;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isActive = option.widget && option.widget->hasFocus();
    const auto group = !option.state.testFlag(QStyle::State_Enabled) ? QPalette::Disabled
                       : isActive                                    ? QPalette::Active
                                                                     : QPalette::Inactive;
    const auto color = [&](QPalette::ColorRole role) { return option.palette.color(group, role); };

    TextInk ink{color(QPalette::Text), color(QPalette::Base)};
    if (isSelected)
        ink = {color(QPalette::HighlightedText), color(QPalette::Highlight)};
    else if (isCurrentRow)
        ink.paper = between(ink.paper, option.palette.color(QPalette::Active, QPalette::Highlight), 0.15);
    painter->fillRect(option.rect, ink.paper);

    const QRectF place = QRectF(option.rect).adjusted(margin, 0, -margin, 0);
    const bool isMarked = model_.isMarked(index);
    const auto [line, font] = layOutMarked(model_.text(index), option.font, place.width(), isMarked);
    const Alignment alignment = grid_->column(index.column()).alignment;
    const double free = std::max(0.0, place.width() - line.width);
    const double before = alignment == Alignment::Left ? 0 : alignment == Alignment::Right ? free : free / 2;
    painter->setFont(font);
    paintLine(*painter, line, place.adjusted(before, 0, margin, 0), ink);

    if (isMarked)
        paintRowMark(*painter, option.rect, ink.text);
    if (isCurrentRow && selection.column == index.column() && isActive) {
        painter->setPen(ink.text);
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    }
}

bool GridCells::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
    const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const std::string& text = model_.text(index);
    const double room = view->visualRect(index).width() - 2 * margin;
    if (index.isValid() && layOutCell(text, QFontMetricsF(view->font()), room).isCut)
        QToolTip::showText(event->globalPos(), cellToolTip(text), view->viewport(), view->visualRect(index));
    else if (model_.isMarked(index))
        QToolTip::showText(event->globalPos(), cellToolTip(grid_->rowMark.get().text), view->viewport(),
            view->visualRect(index));
    else
        QToolTip::hideText();
    return true;
}

} // namespace genutil
