#pragma once

#include "hostif/control.h"

class QWidget;

namespace genutil {

// Gives the view the colours of a background's meaning, of the theme in use when it is called.
void showBackColor(QWidget& view, BackColor meaning);

// A thin bar in the accent colour left of the view, 5 pixels into the margin beside it; nothing moves for it.
// A screen reader says it after the view's tooltip.
void showMark(QWidget& view, bool marked);

} // namespace genutil
