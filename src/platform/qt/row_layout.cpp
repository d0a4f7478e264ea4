#include "platform/qt/row_layout.h"

namespace genutil {

TextPosition RowLayout::end() const {
    const std::size_t last = document_->lineCount() - 1;
    return {last, document_->line(last).size()};
}

std::optional<TextRow> RowLayout::next(const TextRow& row) {
    if (row.end < document_->line(row.line).size())
        return rowAt({row.line, row.end});
    if (row.line + 1 < document_->lineCount())
        return rowAt({row.line + 1, 0});
    return std::nullopt;
}

std::optional<TextRow> RowLayout::previous(const TextRow& row) {
    if (row.begin > 0)
        return rowAt({row.line, row.begin - 1});
    if (row.line > 0)
        return rowAt({row.line - 1, document_->line(row.line - 1).size()});
    return std::nullopt;
}

} // namespace genutil
