#pragma once

#include "hostif/grid_filter.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace genutil {

// How the texts of a column are ordered. Generic: empty texts first, then those that look like numbers, by
// value, then all others, case left aside. Numeric: by the number that the text begins with, 0 without one.
enum class GridOrder { Generic, Numeric };

// The rows of a grid below its header: texts, an order, and a filter that leaves some of them out. `at`
// counts the rows that are shown, from 0.
class GridRows {
public:
    void clear();
    // Adds a row of tab-separated texts after all others; it is shown whatever the filter.
    void add(std::string_view tabSeparated);

    std::int32_t shownCount() const { return std::int32_t(shown_.size()); }
    std::int32_t totalCount() const { return std::int32_t(rows_.size()); }
    // "" for a column that the row does not have.
    const std::string& cell(std::int32_t at, std::int32_t column) const;
    // Which row it is in the order in which they were added, from 1.
    std::int32_t number(std::int32_t at) const { return std::int32_t(shown_[std::size_t(at)]) + 1; }
    // Where the row of this number is shown; -1: the filter leaves it out.
    std::int32_t placeOf(std::int32_t number) const;

    // Rows whose texts are equal keep their order among each other.
    void sort(std::int32_t column, GridOrder order, bool ascending);
    // Brings the rows into the order in which they were added.
    void restoreOrder();
    // Shows the rows that hold every word in the first columns; all rows for no word.
    void filter(std::vector<FilterWord> words, std::int32_t columns);
    bool isFiltered() const { return !words_.empty(); }

private:
    using Index = std::uint32_t;

    const std::string& textOf(Index row, std::int32_t column) const;
    void applyFilter();

    std::vector<std::vector<std::string>> rows_; // as they were added
    std::vector<Index> ordered_;                 // all rows, sorted
    std::vector<Index> shown_;                   // those that the filter lets through, sorted
    std::vector<FilterWord> words_;
    // Each row's texts that are searched, in bareLetters(), a line end behind each; empty until they are
    // needed.
    std::vector<std::string> bare_;
    std::size_t searched_ = 0; // columns
};

} // namespace genutil
