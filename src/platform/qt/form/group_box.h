#pragma once

#include "hostif/controls.h"

class QGroupBox;
class QObject;

namespace genutil {

// A frame with a caption around the controls that belong together. A control in it that does not report the
// mouse itself passes it on with forwardMouse().
void bind(QGroupBox* view, Panel& model);

// The mouse over `inner` counts as being over `outer`, as long as the view stands.
void forwardMouse(QObject* view, Control& inner, Control& outer);

} // namespace genutil
