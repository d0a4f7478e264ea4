#pragma once

#include "text/text_document.h"

#include <QColor>
#include <QFont>

#include <compare>
#include <cstddef>
#include <memory>
#include <optional>

class QPainter;

namespace genutil {

// A place in a text: before the byte of the line.
struct TextPosition {
    std::size_t line = 0;
    std::size_t byte = 0;
    friend auto operator<=>(const TextPosition&, const TextPosition&) = default;
};

// What stands in one row of the view: the bytes from begin up to end of a line.
struct TextRow {
    std::size_t line = 0;
    std::size_t begin = 0;
    std::size_t end = 0;

    TextPosition position() const { return {line, begin}; }
};

// How a text falls into rows, and where its characters stand in them. Only rows that are asked for are laid
// out. Lengths are pixels; x counts from the row's start.
class RowLayout {
public:
    explicit RowLayout(std::shared_ptr<const text::TextDocument> document) : document_(std::move(document)) {}
    virtual ~RowLayout() = default;

    const text::TextDocument& document() const { return *document_; }
    TextPosition end() const;

    // The row that holds the position; the line's last row for a position behind its text.
    virtual TextRow rowAt(TextPosition position) = 0;
    std::optional<TextRow> next(const TextRow& row);
    std::optional<TextRow> previous(const TextRow& row);

    virtual double xOf(const TextRow& row, std::size_t byte) = 0;
    // The boundary between characters that is nearest to x.
    virtual std::size_t byteNear(const TextRow& row, double x) = 0;
    // Paints what lies between `left` and `right`; `x` and `y` are the row's top left corner.
    virtual void paint(
        QPainter& painter, const TextRow& row, double x, double y, double left, double right) = 0;

    virtual double rowHeight() const = 0;
    // The widest row known so far.
    virtual double width() = 0;

private:
    std::shared_ptr<const text::TextDocument> document_;
};

// Every line is a row.
std::unique_ptr<RowLayout> makeLineRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font);
// Lines are wrapped to the width.
std::unique_ptr<RowLayout> makeWrappedRows(
    std::shared_ptr<const text::TextDocument> document, const QFont& font, double width);

} // namespace genutil
