#pragma once

#include "hostif/value.h"

#include <k_genutil/support.h>

namespace genutil {

// What the variant holds, references resolved. Empty gives the empty text; dates and currencies give doubles.
// Objects, arrays and missing arguments: Error TypeMismatch.
Value toValue(const VARIANT& variant);

// The value as a variant of its own type.
k_genutil::Variant toVariant(const Value& value);

// The value as the given type: Boolean, byte, 16/32-bit integer, single, double, date, text, or VT_EMPTY and
// VT_VARIANT for the value's own type. Error TypeMismatch, Overflow or InvalidNull where it does not fit.
k_genutil::Variant toVariant(const Value& value, VARTYPE type);

// The variant as a variant of the given type. Objects convert to VT_DISPATCH and VT_UNKNOWN only; Empty
// converts to the type's zero, False or empty text. Error as above.
k_genutil::Variant converted(const VARIANT& variant, VARTYPE type);

// The variant that a chain of references to variants ends in.
const VARIANT& resolved(const VARIANT& variant);

// A copy in which a reference to a value is replaced by the value itself.
k_genutil::Variant dereferenced(const VARIANT& variant);

// Puts the value into what the reference (any type with VT_BYREF) points to, in the type that stands there; a
// variant that holds Empty or Null takes the value's own type.
void assignThrough(const VARIANT& reference, const VARIANT& value);

} // namespace genutil
