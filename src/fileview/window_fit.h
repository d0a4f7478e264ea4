#pragma once

#include "hostif/desktop.h"
#include "text/text_document.h"

#include <optional>
#include <string>

// Fitting the viewer's window to the text it shows. Lengths are twips.
namespace genutil {

// The width that the text asks for: the widest line of those wider than 80 dots, led by three "x" as a
// margin, in the measuring size of 8.25 points; three "x" alone when no line is wider than 80 dots. A
// fixed-pitch font is measured by columns; in a proportional one only the lines that can still be the widest
// are measured.
double wantedTextWidth(Desktop& desktop, const Font& font, const text::TextDocument& document);

struct WindowSize {
    double width;
    double height;
};

// The new size of a window whose text box is too narrow for the text, and the text box's new width; nothing
// when the text fits. The window is never wider than the screen; on a screen of at most 800 pixels it takes
// at least 0.8 of it; a window narrower than the screen gets the screen's proportions.
struct Fitted {
    WindowSize window;
    double textBoxWidth;
};
std::optional<Fitted> fitWindow(
    const Screen& screen, WindowSize window, double textBoxWidth, double textWidth);

} // namespace genutil
