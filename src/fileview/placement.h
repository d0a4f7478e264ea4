#pragma once

#include "hostif/desktop.h"
#include "hostif/form.h"
#include "hostif/services.h"

#include <string>

// The viewer's window placement as the settings keep it: window state, top, left, height and width, joined by
// commas, lengths in twips with a point as decimal separator.
namespace genutil {

struct Placement {
    WindowState state = WindowState::Normal;
    double top = 0;
    double left = 0;
    double height = 0;
    double width = 0;
};

// Reads a stored placement. That of a maximized window may hold the lengths that it has when it is restored,
// or none (0). Throws InvalidCall, naming the text and the rule, for a state other than 0, 1 or 2, or for a
// window without an area or far larger than the screen.
Placement readPlacement(const std::string& stored, StringUtilities& strUtil, const Screen& screen);

// The text kept for a normal window of this size: centred on the screen, wherever the window stands.
std::string normalPlacement(const Screen& screen, double width, double height);

// The text kept for a maximized window: the earlier text with its first character replaced.
std::string maximizedPlacement(std::string stored);

} // namespace genutil
