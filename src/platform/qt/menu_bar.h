#pragma once

#include "hostif/form.h"

class QMenuBar;
class QWidget;

namespace genutil {

// A menu bar with the form's menu items: those without a parent stand in the bar, the others in their
// parent's menu, all in the order in which the form has them.
QMenuBar* makeMenuBar(QWidget* window, const Form& form);

} // namespace genutil
