#include "platform/qt/line_ruler.h"
#include "platform/qt/row_layout.h"
#include "text/character_width.h"
#include "text/utf8.h"

#include <QPainter>
#include <QString>

#include <algorithm>

namespace genutil {
namespace {

// Control characters are no text; where they stand is shown.
constexpr char32_t controlMark = U'\u00B7';

class LineRows : public RowLayout {
public:
    LineRows(std::shared_ptr<const text::TextDocument> text, const QFont& font)
        : RowLayout(std::move(text)), ruler_(font) {
        const text::WidestLine widest = document().widestLine();
        if (ruler_.isFixedPitch())
            width_ = double(widest.columns) * ruler_.columnWidth();
        else
            noteWidth(widest.index);
    }

    TextRow rowAt(TextPosition position) override {
        const std::size_t line = std::min(position.line, document().lineCount() - 1);
        return {line, 0, document().line(line).size()};
    }

    double xOf(const TextRow& row, std::size_t byte) override {
        return ruler_.xOf(document().line(row.line), row.line, byte);
    }

    std::size_t byteNear(const TextRow& row, double x) override {
        const std::string_view line = document().line(row.line);
        const auto spot = ruler_.spotAt(line, row.line, x);
        std::size_t after = spot.byte + text::decodeUtf8(line, spot.byte).length;
        // Marks that stand on the character stay with it.
        for (auto mark = text::decodeUtf8(line, after);
             mark.length > 0 && text::characterWidth(mark.codePoint) == 0;
             mark = text::decodeUtf8(line, after))
            after += mark.length;
        return x - spot.x > (xOf(row, after) - spot.x) / 2 ? after : spot.byte;
    }

    void paint(QPainter& painter, const TextRow& row, double x, double y, double left, double right) override;

    double rowHeight() const override { return ruler_.lineHeight(); }
    double width() override { return width_; }

private:
    void noteWidth(std::size_t line) {
        width_ = std::max(width_, ruler_.xOf(document().line(line), line, document().line(line).size()));
    }
    // One past the characters from `begin` on that can be painted together; appends them to `text`.
    std::size_t collect(
        std::string_view line, std::size_t begin, std::size_t end, std::u32string& text) const;

    LineRuler ruler_;
    double width_ = 0;
};

std::size_t LineRows::collect(
    std::string_view line, std::size_t begin, std::size_t end, std::u32string& text) const {
    std::size_t byte = begin;
    bool plain = true;
    while (byte < end && line[byte] != '\t') {
        const auto character = text::decodeUtf8(line, byte);
        const bool isPlain = character.codePoint < 0x80;
        const bool stands = text::characterWidth(character.codePoint) > 0;
        // Columns hold only if every character from another font starts at its own column again.
        if (ruler_.isFixedPitch() && byte > begin && stands && !(plain && isPlain))
            break;
        plain = plain && isPlain;
        const bool control =
            character.codePoint < 0x20 || (character.codePoint >= 0x7F && character.codePoint < 0xA0);
        text.push_back(control ? controlMark : character.codePoint);
        byte += character.length;
    }
    return byte;
}

void LineRows::paint(QPainter& painter, const TextRow& row, double x, double y, double left, double right) {
    const std::string_view line = document().line(row.line);
    const auto first = ruler_.spotAt(line, row.line, left - x);
    auto last = ruler_.spotAt(line, row.line, right - x);
    last.byte = std::min(line.size(), last.byte + text::decodeUtf8(line, last.byte).length);
    if (!ruler_.isFixedPitch() && line.size() < 4096)
        noteWidth(row.line);
    std::u32string text;
    for (std::size_t byte = first.byte; byte < last.byte;) {
        if (line[byte] == '\t') {
            ++byte;
            continue;
        }
        text.clear();
        const std::size_t after = collect(line, byte, last.byte, text);
        const QString shown = QString::fromUcs4(text.data(), qsizetype(text.size()));
        painter.drawText(QPointF(x + xOf(row, byte), y + ruler_.ascent()), shown);
        byte = after;
    }
}

} // namespace

std::unique_ptr<RowLayout> makeLineRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font) {
    return std::make_unique<LineRows>(std::move(document), font);
}

} // namespace genutil
