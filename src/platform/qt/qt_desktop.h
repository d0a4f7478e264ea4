#pragma once

#include "hostif/desktop.h"
#include "platform/qt/windows/form_views.h"

#include <memory>

namespace genutil {

// The desktop of this system. Makes the application object when the process has none yet, and takes over the
// user's way of writing numbers and dates. Windows that are still open when it is destroyed go with it.
std::unique_ptr<Desktop> makeQtDesktop(FormViews views = standardFormViews());

} // namespace genutil
