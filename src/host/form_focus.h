#pragma once

#include "host/late_bound.h"

namespace kestal {

/// Moves the focus of a component's form by `steps` places in its tab order (backwards when negative), over
/// the controls that are visible and enabled. From the ends it goes round, or stops there when `stopAtEnds`.
/// A form without such controls stays as it is; one without focus begins at its first control.
void moveFocus(const LateBound& form, int steps, bool stopAtEnds);

/// Selects the whole text of a text box.
void selectAllText(const LateBound& control);

} // namespace kestal
