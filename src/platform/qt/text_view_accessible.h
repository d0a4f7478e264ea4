#pragma once

namespace genutil {

// Tells assistive technology what a TextView is: a read-only text, whose value is the text that is seen. Once
// is enough; further calls do nothing.
void installTextViewAccessibility();

} // namespace genutil
