#include "platform/qt/text/line_ruler.h"
#include "platform/qt/text/row_layout.h"
#include "platform/qt/text/utf16_text.h"
#include "text/character_width.h"
#include "text/control_mark.h"

#include <QGlyphRun>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <map>
#include <ranges>

namespace genutil {
namespace {

// A line is laid out in pieces of this many bytes, so that a line of any length costs no more than what is
// shown of it. A new piece starts a new row.
constexpr std::size_t pieceSize = 8192;
constexpr std::size_t keptPieces = 256;

// Takes the place of a control character, whose mark is painted over it. It is in every font and has no
// direction.
constexpr QChar markPlace = u'*';

struct Piece {
    std::size_t begin = 0; // in the line
    Utf16Text text;
    bool mixesDirections = false;
    QTextLayout layout;

    std::size_t byteOf(int unit) const { return begin + text.byteOf(unit); }
    // The first unit of the character that holds the byte.
    int unitOf(std::size_t byte) const { return text.unitOf(byte - std::min(byte, begin)); }
};

// The boundary of a character at or after the byte.
std::size_t boundary(std::string_view line, std::size_t byte) {
    byte = std::min(byte, line.size());
    for (int i = 0; i < 3 && byte < line.size() && (line[byte] & 0xC0) == 0x80; ++i)
        ++byte;
    return byte;
}

class WrappedRows : public RowLayout {
public:
    WrappedRows(std::shared_ptr<const text::TextDocument> text, const QFont& font, double width)
        : RowLayout(std::move(text)), font_(font), ruler_(font),
          width_(std::max(width, ruler_.columnWidth())) {}

    void changed(const text::TextChange& change) override;

    TextRow rowAt(text::TextPosition position) override {
        const std::size_t line = std::min(position.line, document().lineCount() - 1);
        const Piece& piece = pieceAt(line, position.byte);
        const QTextLine row = lineOf(piece, position.byte);
        return {line, piece.byteOf(row.textStart()), piece.byteOf(row.textStart() + row.textLength())};
    }

    double xOf(const TextRow& row, std::size_t byte) override {
        const Piece& piece = pieceAt(row.line, row.begin);
        return lineOf(piece, row.begin).cursorToX(piece.unitOf(byte));
    }

    std::size_t byteNear(const TextRow& row, double x) override {
        const Piece& piece = pieceAt(row.line, row.begin);
        const QTextLine line = lineOf(piece, row.begin);
        int unit = line.xToCursor(x);
        // The place behind a row's last blank is the next row's first.
        if (piece.byteOf(unit) >= row.end && row.end < document().line(row.line).size())
            unit = piece.layout.previousCursorPosition(unit);
        return std::clamp(piece.byteOf(unit), row.begin, row.end);
    }

    std::vector<RowSpan> spansOf(const TextRow& row, std::size_t begin, std::size_t end) override;

    void paint(QPainter& painter, const TextRow& row, double x, double y, double, double,
        const TextInk& ink) override {
        const Piece& piece = pieceAt(row.line, row.begin);
        const QTextLine line = lineOf(piece, row.begin);
        painter.setPen(ink.text);
        // On the rows' common base line, whatever other fonts the row takes characters from.
        line.draw(&painter, QPointF(x, y + ruler_.ascent() - line.ascent()) - line.position());
        paintMarks(painter, piece, line, QPointF(x, y), ink);
    }

    double rowHeight() const override { return ruler_.lineHeight(); }
    double width() override { return width_; }

private:
    const Piece& pieceAt(std::size_t line, std::size_t byte);
    void layOut(Piece& piece) const;
    void paintMarks(QPainter& painter, const Piece& piece, const QTextLine& line, QPointF place,
        const TextInk& ink) const;

    // The last row of the piece that does not start behind the byte.
    static QTextLine lineOf(const Piece& piece, std::size_t byte) {
        const int unit = piece.unitOf(byte);
        const auto numbers = std::views::iota(1, piece.layout.lineCount());
        const auto behind = std::ranges::partition_point(
            numbers, [&](int number) { return piece.layout.lineAt(number).textStart() <= unit; });
        return piece.layout.lineAt(int(behind - numbers.begin()));
    }

    QFont font_;
    LineRuler ruler_;
    double width_;
    std::map<text::TextPosition, Piece> pieces_;
};

const Piece& WrappedRows::pieceAt(std::size_t number, std::size_t byte) {
    const std::string_view line = document().line(number);
    // A line's end belongs to its last piece.
    const std::size_t inside = std::min(byte, line.empty() ? 0 : line.size() - 1);
    std::size_t begin = boundary(line, inside / pieceSize * pieceSize);
    if (begin > inside)
        begin = boundary(line, (inside / pieceSize - 1) * pieceSize);
    if (const auto kept = pieces_.find({number, begin}); kept != pieces_.end())
        return kept->second;
    if (pieces_.size() >= keptPieces)
        pieces_.clear();
    Piece& piece = pieces_[{number, begin}];
    piece.begin = begin;
    const std::size_t end = boundary(line, (begin / pieceSize + 1) * pieceSize);
    piece.text = Utf16Text(line.substr(begin, end - begin));
    layOut(piece);
    return piece;
}

void WrappedRows::layOut(Piece& piece) const {
    QString shown = piece.text.text();
    for (QChar& unit : shown) {
        if (!unit.isSurrogate() && text::controlMark(unit.unicode()))
            unit = markPlace;
        piece.mixesDirections |= unit.unicode() >= 0x0590; // no need to be exact: it only costs time
    }
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LeftToRight);
    option.setTabStopDistance(double(text::tabStop) * ruler_.columnWidth());
    piece.layout.setFont(font_);
    piece.layout.setText(shown);
    piece.layout.setTextOption(option);
    piece.layout.setCacheEnabled(true);
    piece.layout.beginLayout();
    for (QTextLine line = piece.layout.createLine(); line.isValid(); line = piece.layout.createLine())
        line.setLineWidth(width_);
    piece.layout.endLayout();
}

void WrappedRows::paintMarks(
    QPainter& painter, const Piece& piece, const QTextLine& line, QPointF place, const TextInk& ink) const {
    const QString& text = piece.text.text();
    for (int unit = line.textStart(); unit < line.textStart() + line.textLength(); ++unit) {
        const QChar character = text[unit];
        const char sign = character.isSurrogate() ? '\0' : text::controlMark(character.unicode());
        if (!sign)
            continue;
        const double left = line.cursorToX(unit);
        const double right = line.cursorToX(unit, QTextLine::Trailing);
        paintControlMark(painter, sign,
            QRectF(place.x() + std::min(left, right), place.y(), std::abs(right - left), rowHeight()), ink);
    }
}

std::vector<RowSpan> WrappedRows::spansOf(const TextRow& row, std::size_t begin, std::size_t end) {
    const Piece& piece = pieceAt(row.line, row.begin);
    if (!piece.mixesDirections)
        return RowLayout::spansOf(row, begin, end);
    const QTextLine line = lineOf(piece, row.begin);
    const int first = piece.unitOf(begin);
    const int last = piece.unitOf(end);
    std::vector<RowSpan> spans;
    for (const QGlyphRun& run : line.glyphRuns(first, last - first))
        spans.push_back({run.boundingRect().left(), run.boundingRect().right()});
    // Tabs have no glyphs.
    for (int unit = first; unit < last; ++unit)
        if (piece.text.text()[unit] == u'\t')
            spans.push_back({line.cursorToX(unit), line.cursorToX(unit, QTextLine::Trailing)});
    return spans;
}

void WrappedRows::changed(const text::TextChange& change) {
    std::map<text::TextPosition, Piece> kept;
    while (!pieces_.empty()) {
        auto piece = pieces_.extract(pieces_.begin());
        text::TextPosition& key = piece.key();
        if (key.line > change.oldEnd.line)
            key.line += change.newEnd.line - change.oldEnd.line;
        else if (key.line > change.from.line ||
                 (key.line == change.from.line && key.byte + pieceSize + 3 >= change.from.byte))
            continue;
        kept.insert(std::move(piece));
    }
    pieces_ = std::move(kept);
}

} // namespace

std::unique_ptr<RowLayout> makeWrappedRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font, double width) {
    return std::make_unique<WrappedRows>(std::move(document), font, width);
}

} // namespace genutil
