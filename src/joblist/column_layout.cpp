#include "joblist/column_layout.h"
#include "text/blanks.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace genutil {
namespace {

constexpr double widestColumn = 100000; // twips: wider than any screen

std::optional<std::int32_t> columnTitled(const Grid& grid, std::string_view title) {
    for (std::int32_t column = 0; column < grid.columnCount(); ++column)
        if (!title.empty() && text::trimBlanks(grid.column(column).title) == title)
            return column;
    return std::nullopt;
}

// Takes the text up to the separator off the front.
std::string_view nextPiece(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view piece = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return piece;
}

bool hasShownColumn(const Grid& grid) {
    for (std::int32_t column = 0; column < grid.columnCount(); ++column)
        if (!grid.column(column).hidden && !grid.column(column).title.empty())
            return true;
    return false;
}

} // namespace

std::string columnLayout(const Grid& grid) {
    std::string layout;
    for (std::int32_t position = 0; position < grid.columnCount(); ++position) {
        const Grid::Column& column = grid.column(grid.columnAt(position));
        if (column.title.empty())
            continue;
        layout.append(layout.empty() ? "" : ";").append(text::trimBlanks(column.title)).append("=");
        layout += column.sizedByUser ? std::to_string(std::lround(column.width)) : "*";
        layout += column.hidden ? ",hidden" : "";
    }
    return layout;
}

void applyColumnLayout(Grid& grid, std::string_view layout) {
    std::int32_t position = 0;
    while (!layout.empty()) {
        std::string_view rest = nextPiece(layout, ';');
        const auto column = columnTitled(grid, nextPiece(rest, '='));
        if (!column || grid.positionOf(*column) < position)
            continue; // unknown, or named twice
        grid.moveColumn(*column, position++);
        const std::string_view width = nextPiece(rest, ',');
        double twips = 0;
        const auto [stop, fault] = std::from_chars(width.data(), width.data() + width.size(), twips);
        if (fault == std::errc() && twips > 0 && twips <= widestColumn)
            grid.setColumnWidth(*column, twips, true);
        grid.setColumnHidden(*column, rest == "hidden");
    }
    // A list without columns could not be used to bring one back.
    for (std::int32_t column = 0; !hasShownColumn(grid) && column < grid.columnCount(); ++column)
        grid.setColumnHidden(column, false);
}

} // namespace genutil
