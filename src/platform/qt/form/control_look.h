#pragma once

#include "hostif/control.h"

class QWidget;

namespace genutil {

// Gives the view the colours that a background's meaning has in the theme, and keeps to the theme when it
// changes.
void showBackColor(QWidget& view, BackColor meaning);

// A thin bar in the accent colour left of the view, 5 pixels into the margin beside it; nothing moves for it.
// A screen reader says it after the view's tooltip.
void showMark(QWidget& view, bool marked);

} // namespace genutil
