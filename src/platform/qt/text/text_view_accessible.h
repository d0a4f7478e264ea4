#pragma once

#include "text/text_position.h"

namespace genutil {

class TextView;

// Gives assistive technology the text of every TextView. Once is enough; further calls do nothing.
void installTextViewAccessibility();

// What assistive technology is told about, where there is any. The view has already followed.
void accessibleTextRenewed(TextView& view);
void accessibleTextChanged(TextView& view, const text::TextChange& change);
void accessibleCaretMoved(TextView& view);

} // namespace genutil
