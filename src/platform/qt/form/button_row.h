#pragma once

#include "hostif/controls.h"

#include <initializer_list>

class QHBoxLayout;
class QWidget;

namespace genutil {

// The strip below a dialog: the panel of instant help takes the room that the buttons, at the right, leave.
QHBoxLayout* makeButtonRow(QWidget* parent, Panel& help, std::initializer_list<Button*> buttons);

} // namespace genutil
