#pragma once

#include "hostif/control.h"

#include <QFont>

namespace genutil {

// The toolkit's font for a control's font; what is not installed is replaced by a font of the same widths.
// Views and measurements both use it, so that a measured text has exactly the width in which it is shown.
QFont toQFont(const Font& font);

} // namespace genutil
