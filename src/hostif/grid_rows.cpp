#include "hostif/grid_rows.h"

#include "hostif/value.h"
#include "text/blanks.h"
#include "text/letters.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace genutil {
namespace {

const std::string noText;

// What a text is compared by.
struct SortKey {
    enum Kind { Empty, Number, Text };
    Kind kind = Empty;
    double number = 0;
    std::string text;

    bool operator<(const SortKey& other) const {
        if (kind != other.kind)
            return kind < other.kind;
        return kind == Text ? text < other.text : number < other.number;
    }
};

SortKey keyOf(const std::string& text, GridOrder order) {
    if (order == GridOrder::Numeric)
        return {SortKey::Number, leadingNumber(text), {}};
    const std::string shown = text::trimBlanks(text);
    if (shown.empty())
        return {};
    if (const auto number = wholeNumber(shown))
        return {SortKey::Number, *number, {}};
    return {SortKey::Text, 0, text::folded(shown)};
}

} // namespace

void GridRows::clear() {
    *this = GridRows();
}

void GridRows::add(std::string_view tabSeparated) {
    std::vector<std::string>& cells = rows_.emplace_back();
    cells.reserve(std::size_t(std::ranges::count(tabSeparated, '\t')) + 1);
    for (std::size_t start = 0, end = 0; end != std::string_view::npos; start = end + 1) {
        end = tabSeparated.find('\t', start);
        cells.emplace_back(tabSeparated.substr(start, end - start));
    }
    const auto row = static_cast<Index>(rows_.size() - 1);
    ordered_.push_back(row);
    shown_.push_back(row);
    folded_.clear();
}

const std::string& GridRows::textOf(Index row, std::int32_t column) const {
    const auto& cells = rows_[row];
    return column >= 0 && std::size_t(column) < cells.size() ? cells[std::size_t(column)] : noText;
}

const std::string& GridRows::cell(std::int32_t at, std::int32_t column) const {
    return textOf(shown_[std::size_t(at)], column);
}

std::int32_t GridRows::placeOf(std::int32_t number) const {
    const auto found = std::ranges::find(shown_, static_cast<Index>(number - 1));
    return found == shown_.end() ? -1 : std::int32_t(found - shown_.begin());
}

void GridRows::sort(std::int32_t column, GridOrder order, bool ascending) {
    std::vector<SortKey> keys(rows_.size());
    for (std::size_t row = 0; row < rows_.size(); ++row)
        keys[row] = keyOf(textOf(static_cast<Index>(row), column), order);
    std::ranges::stable_sort(
        ordered_, [&](Index a, Index b) { return ascending ? keys[a] < keys[b] : keys[b] < keys[a]; });
    applyFilter();
}

void GridRows::filter(std::string_view words, std::int32_t columns) {
    if (std::exchange(searched_, std::size_t(columns)) != std::size_t(columns))
        folded_.clear();
    words_.clear();
    for (std::size_t start = 0; (start = words.find_first_not_of(' ', start)) != std::string_view::npos;) {
        const std::size_t end = std::min(words.find(' ', start), words.size());
        words_.push_back(text::folded(words.substr(start, end - start)));
        start = end;
    }
    applyFilter();
}

void GridRows::applyFilter() {
    if (words_.empty()) {
        shown_ = ordered_;
        return;
    }
    if (folded_.empty()) {
        folded_.resize(rows_.size());
        for (std::size_t row = 0; row < rows_.size(); ++row)
            for (std::size_t column = 0; column < std::min(searched_, rows_[row].size()); ++column)
                // A line end is in no word, so none is found across two cells.
                folded_[row].append(text::folded(rows_[row][column])).append(1, '\n');
    }
    shown_.clear();
    std::ranges::copy_if(ordered_, std::back_inserter(shown_), [&](Index row) {
        return std::ranges::all_of(
            words_, [&](const std::string& word) { return folded_[row].find(word) != std::string::npos; });
    });
}

} // namespace genutil
