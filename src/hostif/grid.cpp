#include "hostif/grid.h"

#include "hostif/error.h"
#include "hostif/form.h"
#include "text/bare_letters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace genutil {
namespace {

constexpr double leastWidth = 15; // twips; a narrower column could not be taken hold of again

Grid::Column parsed(std::string_view piece) {
    Grid::Column column;
    const char lead = piece.empty() ? '\0' : piece[0];
    column.alignment = lead == '^' ? Alignment::Centre : lead == '>' ? Alignment::Right : Alignment::Left;
    column.title = piece.substr(lead == '<' || lead == '^' || lead == '>' ? 1 : 0);
    return column;
}

} // namespace

Grid::Grid(Form& owner, std::string name) : Control(owner, std::move(name)) {}

std::span<const ScriptMember> Grid::ownMembers() const {
    static constexpr std::array members{
        ScriptMember{"Rows", [](Control& c) { return Value(static_cast<Grid&>(c).rowCount()); }, nullptr},
        ScriptMember{"Cols", [](Control& c) { return Value(static_cast<Grid&>(c).columnCount()); }, nullptr},
    };
    return members;
}

double Grid::titleWidth(const Column& column) const {
    return form().desktop().textWidth(font, column.title);
}

void Grid::setFormat(const std::string& format) {
    format_ = format;
    std::vector<Column> columns;
    for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
        end = format.find('|', start);
        Column column = parsed(std::string_view(format).substr(start, end - start));
        const std::size_t at = columns.size();
        if (at < columns_.size() && columns_[at].title == column.title) {
            columns_[at].alignment = column.alignment;
            columns.push_back(columns_[at]);
        } else {
            column.width = titleWidth(column);
            columns.push_back(std::move(column));
        }
    }
    if (columns.size() != columns_.size()) {
        positions_.resize(columns.size());
        std::iota(positions_.begin(), positions_.end(), 0);
    }
    columns_ = std::move(columns);
    selection_ = within(selection_);
    notify(Aspect::Items);
}

Grid::Column& Grid::columnOf(std::int32_t column) {
    if (column < 0 || column >= columnCount())
        throw Error(errors::OutOfRange, "Grid column " + std::to_string(column) + " is not between 0 and " +
                                            std::to_string(columnCount() - 1));
    return columns_[std::size_t(column)];
}

const Grid::Column& Grid::column(std::int32_t column) const {
    return const_cast<Grid&>(*this).columnOf(column);
}

void Grid::setColumnWidth(std::int32_t column, double twips, bool byUser) {
    Column& sized = columnOf(column);
    sized.width = std::isfinite(twips) ? std::max(twips, 0.0) : 0;
    sized.sizedByUser = byUser;
    notify(Aspect::Items);
}

void Grid::setColumnHidden(std::int32_t column, bool hidden) {
    columnOf(column).hidden = hidden;
    notify(Aspect::Items);
}

std::int32_t Grid::columnAt(std::int32_t position) const {
    column(position);
    return positions_[std::size_t(position)];
}

std::int32_t Grid::positionOf(std::int32_t wanted) const {
    column(wanted);
    return std::int32_t(std::ranges::find(positions_, wanted) - positions_.begin());
}

void Grid::moveColumn(std::int32_t column, std::int32_t position) {
    const auto from = positions_.begin() + positionOf(column);
    const auto to = positions_.begin() + positionOf(columnAt(position));
    if (from < to)
        std::rotate(from, from + 1, to + 1);
    else
        std::rotate(to, from, from + 1);
    notify(Aspect::Items);
}

std::vector<std::int32_t> Grid::columnsBetween(std::int32_t column, std::int32_t other) const {
    const auto [first, last] = std::minmax({positionOf(column), positionOf(other)});
    std::vector<std::int32_t> seen;
    for (std::int32_t position = first; position <= last; ++position)
        if (const std::int32_t at = positions_[std::size_t(position)]; !columns_[std::size_t(at)].hidden)
            seen.push_back(at);
    return seen;
}

void Grid::clearRows() {
    rows_.clear();
    selection_ = within(selection_);
    notify(Aspect::Items);
}

void Grid::addRow(std::string_view tabSeparated) {
    rows_.add(tabSeparated);
    notify(Aspect::Items);
}

const std::string& Grid::text(std::int32_t row, std::int32_t column) const {
    static const std::string none;
    if (row < 0 || row >= rowCount())
        throw Error(errors::OutOfRange,
            "Grid row " + std::to_string(row) + " is not between 0 and " + std::to_string(rowCount() - 1));
    if (row > 0)
        return rows_.cell(row - 1, column);
    return column >= 0 && column < columnCount() ? columns_[std::size_t(column)].title : none;
}

std::int32_t Grid::rowNumber(std::int32_t row) const {
    text(row, 0);
    return row == 0 ? 0 : rows_.number(row - 1);
}

void Grid::sort(std::int32_t column, GridOrder order, bool ascending) {
    rows_.sort(column, order, ascending);
    notify(Aspect::Items);
}

void Grid::sortInPlace(std::int32_t column, GridOrder order, bool ascending, bool keepsOrder) {
    rearrange([&] {
        if (!keepsOrder)
            rows_.restoreOrder();
        rows_.sort(column, order, ascending);
    });
}

void Grid::filter(std::string_view words) {
    rearrange([&] {
        std::vector<std::string> titles;
        for (auto column = columns_.begin(); column != columns_.end() && !column->title.empty(); ++column)
            titles.push_back(column->title);
        rows_.filter(filterWords(words, titles), std::int32_t(titles.size()));
    });
}

void Grid::rearrange(const std::function<void()>& change) {
    const std::int32_t current = selection_.row;
    const std::int32_t number = current > 0 && current < rowCount() ? rowNumber(current) : 0;
    change();
    notify(Aspect::Items);
    const std::int32_t place = number > 0 ? rows_.placeOf(number) : -1;
    setCurrentCell(place < 0 ? 1 : place + 1, selection_.column);
    rowColumnChange(); // the same place may hold another row now
}

GridRange Grid::within(GridRange range) const {
    const auto row = [this](std::int32_t at) { return std::clamp(at, 0, rowCount() - 1); };
    const auto column = [this](std::int32_t at) { return std::clamp(at, 0, std::max(0, columnCount() - 1)); };
    return {row(range.row), column(range.column), row(range.endRow), column(range.endColumn)};
}

void Grid::select(GridRange range) {
    range = within(range);
    if (range == selection_)
        return;
    const GridRange earlier = std::exchange(selection_, range);
    notify(Aspect::Value);
    if (range.row == earlier.row && range.column == earlier.column)
        return;
    enterCell();
    rowColumnChange();
}

bool Grid::isSelected(std::int32_t row, std::int32_t column) const {
    const auto between = [](std::int32_t at, std::int32_t a, std::int32_t b) {
        return std::min(a, b) <= at && at <= std::max(a, b);
    };
    return between(row, selection_.row, selection_.endRow) &&
           between(positionOf(column), positionOf(selection_.column), positionOf(selection_.endColumn));
}

void Grid::userPress(std::int32_t row, std::int32_t column, const GridPress& press) {
    if (!enabled)
        return;
    if (press.button == MouseButton::Left && press.onHeader)
        select({1, column, rowCount() - 1, column});
    else if (press.button == MouseButton::Left)
        userMove(row, column, press.shift);
    else if (press.button == MouseButton::Right && !press.onHeader && !isSelected(row, column))
        setCurrentCell(row, column);
    mouseDown(press);
}

void Grid::userRelease() {
    if (enabled)
        click();
}

void Grid::userDoubleClick() {
    if (enabled)
        doubleClick();
}

void Grid::userMove(std::int32_t row, std::int32_t column, bool extend) {
    if (!enabled)
        return;
    row = std::max(row, 1); // the header is not current unless all is selected
    if (extend)
        select({selection_.row, selection_.column, row, column});
    else
        setCurrentCell(row, column);
}

bool Grid::userJumpTo(std::string_view typed) {
    const std::string wanted = text::bareLetters(typed);
    const std::int32_t count = rows_.shownCount();
    const std::int32_t current = std::max(selection_.row, 1) - 1;
    const std::int32_t first = typed.size() > 1 ? current : current + 1;
    for (std::int32_t i = 0; enabled && !wanted.empty() && i < count; ++i) {
        const std::int32_t at = (first + i) % count;
        if (!text::bareLetters(rows_.cell(at, selection_.column)).starts_with(wanted))
            continue;
        setCurrentCell(at + 1, selection_.column);
        return true;
    }
    return false;
}

void Grid::userResizeColumn(std::int32_t column, double twips) {
    setColumnWidth(column, std::max(twips, leastWidth), true);
    layoutChange();
}

void Grid::userMoveColumn(std::int32_t column, std::int32_t position) {
    moveColumn(column, position);
    layoutChange();
}

void Grid::userFitColumn(std::int32_t column) {
    columnOf(column).sizedByUser = false;
    fitColumn(column);
    layoutChange();
}

void Grid::userHideColumn(std::int32_t column, bool hidden) {
    setColumnHidden(column, hidden);
    layoutChange();
}

} // namespace genutil
