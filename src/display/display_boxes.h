#pragma once

#include "hostif/controls.h"

#include <cstddef>
#include <span>

// What the host's plot can show. Each is a check box of the dialog and an item of the host's View menu, whose
// check mark keeps the choice.
namespace genutil {

enum class DisplayFrame { Points, Lines, General };

// The sample of a kind of line as the plot draws it.
struct LegendLine {
    const char* control = nullptr; // null: not a line
    Rgb color;
    LineStyle style = LineStyle::Solid;
    int width = 1; // pixels
};

struct DisplayBox {
    const char* control;
    const char* caption;
    const char* menuItem;
    DisplayFrame frame;
    const char* help; // what is drawn, for the tooltip
    LegendLine legend = {};
};

// All boxes in the order in which they are loaded and written, which is also their order within each frame.
// The first are `chkPoints`, by index.
std::span<const DisplayBox> displayBoxes();
inline constexpr std::size_t pointBoxCount = 8;

// The names of the boxes in the order of the focus: those in front of the buttons, and those behind them.
std::span<const char* const> focusBeforeButtons();
std::span<const char* const> focusAfterButtons();

// The arrow that stands for a bearing: its shaft and the two strokes of its head.
std::span<const LegendLine> referenceArrow();

} // namespace genutil
