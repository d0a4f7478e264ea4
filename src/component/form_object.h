#pragma once

#include <k_genutil/support.h>

namespace genutil {

class Control;

// The automation object that stands for a form or a control towards host objects. Its members are those that
// the model offers by name, SetFocus, and Parent (a control's form); a form also has ActiveControl, Controls
// (Count and Item, by position from 0 or by name) and each of its controls by name. The object does not keep
// its form: after the form has gone every member fails with ObjectNotSet. The same control gives the same
// object for as long as anyone holds it.
k_genutil::Ref<IDispatch> automationObject(Control& control);

} // namespace genutil
