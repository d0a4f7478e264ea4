#include "hostif/grid_rows.h"

#include "hostif/value.h"
#include "text/bare_letters.h"
#include "text/blanks.h"
#include "text/letters.h"

#include <algorithm>
#include <numeric>
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

// Whether the word is in a cell of the row, whose cells each end in a line end.
bool holds(const std::string& row, const FilterWord& word) {
    const std::size_t found = row.find(word.text);
    if (word.columns.empty() || found == std::string::npos)
        return found != std::string::npos;
    std::size_t start = 0;
    std::int32_t column = 0;
    for (const std::int32_t wanted : word.columns) {
        for (; column < wanted && start < row.size(); ++column)
            start = row.find('\n', start) + 1;
        const std::size_t end = row.find('\n', start);
        if (std::string_view(row).substr(start, end - start).find(word.text) != std::string_view::npos)
            return true;
    }
    return false;
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
    bare_.clear();
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

void GridRows::restoreOrder() {
    std::iota(ordered_.begin(), ordered_.end(), Index(0));
    applyFilter();
}

void GridRows::filter(std::vector<FilterWord> words, std::int32_t columns) {
    if (std::exchange(searched_, std::size_t(columns)) != std::size_t(columns))
        bare_.clear();
    words_ = std::move(words);
    applyFilter();
}

void GridRows::applyFilter() {
    if (words_.empty()) {
        shown_ = ordered_;
        return;
    }
    if (bare_.empty()) {
        bare_.resize(rows_.size());
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            for (std::size_t column = 0; column < std::min(searched_, rows_[row].size()); ++column)
                // A line end is in no word, so none is found across two cells.
                bare_[row].append(text::bareLetters(rows_[row][column])).append(1, '\n');
            bare_[row].shrink_to_fit();
        }
    }
    shown_.clear();
    std::ranges::copy_if(ordered_, std::back_inserter(shown_), [&](Index row) {
        return std::ranges::all_of(words_, [&](const FilterWord& word) { return holds(bare_[row], word); });
    });
}

} // namespace genutil
