#pragma once

#include "hostif/form.h"

class QMenu;
class QMenuBar;
class QWidget;

namespace genutil {

class MenuItem;

// A menu bar with the form's menu items: those without a parent stand in the bar, the others in their
// parent's menu, all in the order in which the form has them.
QMenuBar* makeMenuBar(QWidget* window, const Form& form);

// A menu of its own with the entries of one of the form's menu items. Its object name is the item's name.
QMenu* makePopUpMenu(QWidget* window, MenuItem& item);

} // namespace genutil
