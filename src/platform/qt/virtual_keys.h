#pragma once

#include "hostif/control.h"

#include <QKeyEvent>

namespace genutil {

// Virtual-key codes beside those that the rules name.
namespace virtualkey {
inline constexpr int Backspace = 8;
inline constexpr int Left = 37;
inline constexpr int Right = 39;
inline constexpr int Insert = 45;
} // namespace virtualkey

// The virtual-key code of a key of the toolkit; 0 for a key that no form could know.
int virtualKey(int qtKey);

KeyEvent toKeyEvent(const QKeyEvent& event);

} // namespace genutil
