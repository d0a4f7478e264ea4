#pragma once

#include "hostif/control.h"
#include "hostif/grid_rows.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace genutil {

enum class Alignment { Left, Centre, Right };

enum class MouseButton { Left, Right, Middle };

struct GridPress {
    MouseButton button = MouseButton::Left;
    bool shift = false;
    bool ctrl = false;
    bool onHeader = false;
};

// A range of cells: the current cell and the corner across from it.
struct GridRange {
    std::int32_t row = 0, column = 0;
    std::int32_t endRow = 0, endColumn = 0;
    friend bool operator==(const GridRange&, const GridRange&) = default;
};

// The mark in the header of a column by which the rows are ordered; column -1: none.
struct SortMark {
    std::int32_t column = -1;
    bool ascending = true;
    friend bool operator==(const SortMark&, const SortMark&) = default;
};

// A row that stands out from the others, by its rowNumber(); 0: none. The text says what it is, for those who
// do not see the mark.
struct RowMark {
    std::int32_t number = 0;
    std::string text;
    friend bool operator==(const RowMark&, const RowMark&) = default;
};

// A grid of texts. Row 0 is the header, the rows below it are those that are shown, from 1. Columns are
// counted from 0 in the order of the format and keep their numbers wherever the user moves them. Aspects:
// Items for columns and rows, Value for the selection, Scroll for the first row and column in sight.
class Grid : public Control {
public:
    Grid(Form& form, std::string name);

    struct Column {
        std::string title;
        Alignment alignment = Alignment::Left;
        double width = 0; // twips, of the text alone
        bool hidden = false;
        bool sizedByUser = false; // and so to be kept
    };

    // Titles joined by "|", each led by its alignment: "<" left, "^" centred, ">" right. A column whose title
    // is new becomes as wide as it.
    void setFormat(const std::string& format);
    const std::string& format() const { return format_; }

    std::int32_t columnCount() const { return std::int32_t(columns_.size()); }
    // OutOfRange for a column that the grid does not have; so for all that take one.
    const Column& column(std::int32_t column) const;
    void setColumnWidth(std::int32_t column, double twips, bool byUser = false);
    void setColumnHidden(std::int32_t column, bool hidden);

    // Where the columns stand, hidden ones included: positions from 0, left to right.
    std::int32_t columnAt(std::int32_t position) const;
    std::int32_t positionOf(std::int32_t column) const;
    void moveColumn(std::int32_t column, std::int32_t position);
    // The columns that the user sees from one to the other, both included, left to right.
    std::vector<std::int32_t> columnsBetween(std::int32_t column, std::int32_t other) const;

    std::int32_t rowCount() const { return rows_.shownCount() + 1; }
    void clearRows();
    // Adds a row of tab-separated texts.
    void addRow(std::string_view tabSeparated);
    // The text of a cell, the header included; "" for a column that the row does not have. OutOfRange for a
    // row that the grid does not have.
    const std::string& text(std::int32_t row, std::int32_t column) const;
    const GridRows& rows() const { return rows_; }
    // Which row it is in the order in which they were added, from 1; 0 for the header.
    std::int32_t rowNumber(std::int32_t row) const;

    void sort(std::int32_t column, GridOrder order, bool ascending);
    // The same, and the current row stays current. Rows whose texts are equal keep their order, or else stand
    // as they were added.
    void sortInPlace(std::int32_t column, GridOrder order, bool ascending, bool keepsOrder);
    // Shows the rows that hold every word, in some column before the first without a title or in those that
    // the word names; see filterWords(). The current row stays current if it is still shown.
    void filter(std::string_view words);
    Observed<SortMark> sortMark{*this, Aspect::Items, {}};
    Observed<SortMark> secondSortMark{*this, Aspect::Items, {}}; // of the order among equal texts
    Observed<RowMark> rowMark{*this, Aspect::Items, {}};

    const GridRange& selection() const { return selection_; }
    // Cut to what the grid has; then rowColumnChange if it is another one, and enterCell if the current cell
    // is.
    void select(GridRange range);
    void setCurrentCell(std::int32_t row, std::int32_t column) { select({row, column, row, column}); }
    bool isSelected(std::int32_t row, std::int32_t column) const;

    Observed<std::int32_t> topRow{*this, Aspect::Scroll, 1};
    Observed<std::int32_t> leftColumn{*this, Aspect::Scroll, 0};

    Event<const GridPress&> mouseDown; // the pressed cell is current already, except after a right press
    Event<> click;
    Event<> doubleClick;
    Event<> enterCell;
    Event<> rowColumnChange;
    Event<> layoutChange;          // the user has resized, moved, hidden or shown a column
    Event<std::int32_t> fitColumn; // the user asks that the column be as wide as its texts

    // What the view reports. A left press makes the pressed cell current, with Shift it extends the selection
    // to it; one on the header makes the column current and selects all rows. A right press outside the
    // selection makes the cell current.
    void userPress(std::int32_t row, std::int32_t column, const GridPress& press);
    void userRelease();
    void userDoubleClick();
    // Moves the current cell, or only the selection's other corner.
    void userMove(std::int32_t row, std::int32_t column, bool extend);
    // Makes the next row whose text in the current column begins with what was typed, case and accents left
    // aside, current, the current row included when `typed` has more than one character; around the end.
    // False when there is none.
    bool userJumpTo(std::string_view typed);
    void userResizeColumn(std::int32_t column, double twips);
    void userMoveColumn(std::int32_t column, std::int32_t position);
    void userFitColumn(std::int32_t column);
    void userHideColumn(std::int32_t column, bool hidden);

protected:
    std::span<const ScriptMember> ownMembers() const override;

private:
    Column& columnOf(std::int32_t column);
    double titleWidth(const Column& column) const;
    GridRange within(GridRange range) const;
    // Changes which rows are shown, or their order; the current row stays current if it is still shown.
    void rearrange(const std::function<void()>& change);

    std::string format_;
    std::vector<Column> columns_;
    std::vector<std::int32_t> positions_; // the column at each position
    GridRows rows_;
    GridRange selection_;
};

} // namespace genutil
