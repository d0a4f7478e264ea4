#include "platform/qt/text/character_steps.h"
#include "platform/qt/text/line_ruler.h"
#include "platform/qt/text/row_layout.h"
#include "platform/qt/text/script_runs.h"
#include "text/control_mark.h"
#include "text/utf8.h"

#include <QPainter>
#include <QString>

#include <algorithm>

namespace genutil {
namespace {

constexpr std::size_t measuredSize = 4096; // bytes: longer lines are not measured just for the bar's sake
constexpr std::size_t paintedSize = 65536; // bytes: a row of nothing but combining marks has no width

class LineRows : public RowLayout {
public:
    LineRows(std::shared_ptr<const text::TextDocument> text, const QFont& font)
        : RowLayout(std::move(text)), ruler_(font) {
        if (!ruler_.isFixedPitch())
            noteWidth(document().widestLine().index);
    }

    void changed(const text::TextChange& change) override;

    TextRow rowAt(text::TextPosition position) override {
        const std::size_t line = std::min(position.line, document().lineCount() - 1);
        return {line, 0, document().line(line).size()};
    }

    double xOf(const TextRow& row, std::size_t byte) override {
        return ruler_.xOf(document().line(row.line), row.line, byte);
    }

    std::size_t byteNear(const TextRow& row, double x) override {
        const std::string_view line = document().line(row.line);
        const std::size_t before = characterStart(line, ruler_.spotAt(line, row.line, x).byte);
        const std::size_t after = nextCharacter(line, before);
        return x > (xOf(row, before) + xOf(row, after)) / 2 ? after : before;
    }

    void paint(QPainter& painter, const TextRow& row, double x, double y, double left, double right,
        const TextInk& ink) override;

    double rowHeight() const override { return ruler_.lineHeight(); }
    double width() override {
        return ruler_.isFixedPitch() ? double(document().widestLine().columns) * ruler_.columnWidth()
                                     : width_;
    }

private:
    void noteWidth(std::size_t line) {
        width_ = std::max(width_, ruler_.xOf(document().line(line), line, document().line(line).size()));
    }
    // One past the characters from `begin` on that can be painted together.
    std::size_t togetherFrom(std::string_view line, std::size_t begin, std::size_t end);

    LineRuler ruler_;
    double width_ = 0; // of the widest line seen so far, in a proportional font
};

void LineRows::changed(const text::TextChange& change) {
    ruler_.changed(change);
    if (ruler_.isFixedPitch())
        return;
    const std::size_t line = change.newEnd.line;
    if (document().line(line).size() < measuredSize)
        noteWidth(line);
    else if (change.from.line == line) // what was put in cannot have made the line wider than this
        width_ += xOf(rowAt(change.newEnd), change.newEnd.byte) - xOf(rowAt(change.from), change.from.byte);
}

std::size_t LineRows::togetherFrom(std::string_view line, std::size_t begin, std::size_t end) {
    const char32_t first = text::decodeUtf8(line, begin).codePoint;
    if (isComplex(first))
        return scriptRunEnd(line, begin);
    std::size_t byte = begin;
    while (byte < end && line[byte] != '\t') {
        const auto character = text::decodeUtf8(line, byte);
        const std::size_t after = nextCharacter(line, byte);
        const bool alone = after != byte + character.length || isComplex(character.codePoint) ||
                           text::controlMark(character.codePoint) ||
                           !ruler_.fillsItsColumns(character.codePoint);
        if (alone)
            return byte == begin ? after : byte;
        byte = after;
    }
    return byte;
}

void LineRows::paint(QPainter& painter, const TextRow& row, double x, double y, double left, double right,
    const TextInk& ink) {
    const std::string_view line = document().line(row.line);
    const std::size_t first =
        scriptRunStart(line, characterStart(line, ruler_.spotAt(line, row.line, left - x).byte));
    std::size_t last = ruler_.spotAt(line, row.line, right - x).byte;
    last = std::min({line.size(), last + text::decodeUtf8(line, last).length, first + paintedSize});
    if (!ruler_.isFixedPitch() && line.size() < measuredSize)
        noteWidth(row.line);
    painter.setPen(ink.text);
    for (std::size_t byte = first; byte < last;) {
        if (line[byte] == '\t') {
            ++byte;
            continue;
        }
        const char32_t character = text::decodeUtf8(line, byte).codePoint;
        const std::size_t after = togetherFrom(line, byte, last);
        const double at = x + xOf(row, byte);
        if (const char sign = text::controlMark(character)) {
            paintControlMark(painter, sign, QRectF(at, y, ruler_.columnWidth(), rowHeight()), ink);
        } else {
            const std::string_view shown = line.substr(byte, after - byte);
            painter.drawText(QPointF(at, y + ruler_.ascent()),
                nextCharacter(line, byte) == after
                    ? composed(shown)
                    : QString::fromUtf8(shown.data(), qsizetype(shown.size())));
        }
        byte = after;
    }
}

} // namespace

std::unique_ptr<RowLayout> makeLineRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font) {
    return std::make_unique<LineRows>(std::move(document), font);
}

} // namespace genutil
