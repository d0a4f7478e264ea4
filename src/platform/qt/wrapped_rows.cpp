#include "platform/qt/line_ruler.h"
#include "platform/qt/row_layout.h"
#include "text/character_width.h"
#include "text/utf8.h"

#include <QPainter>
#include <QString>
#include <QTextLayout>

#include <algorithm>
#include <map>

namespace genutil {
namespace {

// A line is laid out in pieces of this many bytes, so that a line of any length costs no more than what is
// shown of it. A new piece starts a new row.
constexpr std::size_t pieceSize = 8192;
constexpr std::size_t keptPieces = 256;

struct Piece {
    std::size_t begin = 0;            // in the line
    std::vector<std::uint32_t> bytes; // of each UTF-16 unit, from the piece's start; one more for the end
    QTextLayout layout;

    std::size_t byteOf(int unit) const { return begin + bytes[std::size_t(unit)]; }
    // The first unit of the character that holds the byte.
    int unitOf(std::size_t byte) const {
        const auto relative = std::uint32_t(byte - std::min(byte, begin));
        auto unit = std::ranges::lower_bound(bytes, relative);
        if (unit != bytes.end() && *unit > relative)
            unit = std::ranges::lower_bound(bytes, *std::prev(unit));
        return int(unit - bytes.begin());
    }
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

    TextRow rowAt(TextPosition position) override {
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

    void paint(QPainter& painter, const TextRow& row, double x, double y, double, double) override {
        const QTextLine line = lineOf(pieceAt(row.line, row.begin), row.begin);
        line.draw(&painter, QPointF(x, y) - line.position());
    }

    double rowHeight() const override { return ruler_.lineHeight(); }
    double width() override { return width_; }

private:
    const Piece& pieceAt(std::size_t line, std::size_t byte);
    void layOut(Piece& piece, std::string_view text) const;

    static QTextLine lineOf(const Piece& piece, std::size_t byte) {
        const QTextLine found = piece.layout.lineForTextPosition(piece.unitOf(byte));
        return found.isValid() ? found : piece.layout.lineAt(piece.layout.lineCount() - 1);
    }

    QFont font_;
    LineRuler ruler_;
    double width_;
    std::map<TextPosition, Piece> pieces_;
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
    layOut(piece, line.substr(begin, end - begin));
    return piece;
}

void WrappedRows::layOut(Piece& piece, std::string_view bytes) const {
    QString shown;
    shown.reserve(qsizetype(bytes.size()));
    for (std::size_t at = 0; at < bytes.size();) {
        const auto character = text::decodeUtf8(bytes, at);
        for (const char16_t unit : QChar::fromUcs4(character.codePoint)) {
            shown.append(QChar(unit));
            piece.bytes.push_back(std::uint32_t(at));
        }
        at += character.length;
    }
    piece.bytes.push_back(std::uint32_t(bytes.size()));

    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
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

} // namespace

std::unique_ptr<RowLayout> makeWrappedRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font, double width) {
    return std::make_unique<WrappedRows>(std::move(document), font, width);
}

} // namespace genutil
