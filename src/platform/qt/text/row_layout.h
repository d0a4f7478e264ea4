#pragma once

#include "text/text_document.h"

#include <QColor>
#include <QFont>
#include <QRectF>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

class QPainter;

namespace genutil {

// What stands in one row of the view: the bytes from begin up to end of a line.
struct TextRow {
    std::size_t line = 0;
    std::size_t begin = 0;
    std::size_t end = 0;

    text::TextPosition position() const { return {line, begin}; }
    text::TextPosition last() const { return {line, end}; }
};

struct TextInk {
    QColor text;
    QColor paper;
};

// From left to right, in pixels from the row's start.
struct RowSpan {
    double left = 0;
    double right = 0;
};

// Paints the sign that stands for a control character (text::controlMark()) into its column.
void paintControlMark(QPainter& painter, char sign, const QRectF& column, const TextInk& ink);

// How a text falls into rows, and where its characters stand in them. Only rows that are asked for are laid
// out. Lengths are pixels; x counts from the row's start.
class RowLayout {
public:
    explicit RowLayout(std::shared_ptr<const text::TextDocument> document) : document_(std::move(document)) {}
    virtual ~RowLayout() = default;

    const text::TextDocument& document() const { return *document_; }
    // The document has been edited.
    virtual void changed(const text::TextChange& change) = 0;

    // The row that holds the position; the line's last row for a position behind its text.
    virtual TextRow rowAt(text::TextPosition position) = 0;
    std::optional<TextRow> next(const TextRow& row);
    std::optional<TextRow> previous(const TextRow& row);

    virtual double xOf(const TextRow& row, std::size_t byte) = 0;
    // The boundary between characters that is nearest to x.
    virtual std::size_t byteNear(const TextRow& row, double x) = 0;
    // Where the bytes from `begin` up to `end` are seen; in more than one place where directions mix.
    virtual std::vector<RowSpan> spansOf(const TextRow& row, std::size_t begin, std::size_t end);
    // Paints what lies between `left` and `right`; `x` and `y` are the row's top left corner. The paper is
    // painted only where it shows through a mark.
    virtual void paint(QPainter& painter, const TextRow& row, double x, double y, double left, double right,
        const TextInk& ink) = 0;

    virtual double rowHeight() const = 0;
    // The widest row known so far.
    virtual double width() = 0;

private:
    std::shared_ptr<const text::TextDocument> document_;
};

// Every line is a row. In a fixed-pitch font a character stands at its column, whatever is beside it.
std::unique_ptr<RowLayout> makeLineRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font);
// Lines are wrapped to the width.
std::unique_ptr<RowLayout> makeWrappedRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font, double width);

} // namespace genutil
