#pragma once

#include <k_genutil.h>

#include <cstdint>
#include <stdexcept>
#include <string>

// The ordinary conversions of automation values. An Empty value is 0, False or "".
namespace kestal {

/// A value that does not fit: DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW.
class ConversionError : public std::runtime_error {
public:
    ConversionError(HRESULT result, const std::string& text) : std::runtime_error(text), result_(result) {}
    HRESULT result() const { return result_; }

private:
    HRESULT result_;
};

/// The value itself where `value` is by reference. The copy owns nothing: it holds as long as the original.
VARIANT dereferenced(const VARIANT& value);

std::string textOf(const VARIANT& value);
double numberOf(const VARIANT& value);
/// Fractions go to the nearest integer, halves to the even neighbour.
std::int16_t int16Of(const VARIANT& value);
std::int32_t int32Of(const VARIANT& value);
bool truthOf(const VARIANT& value);
/// The caller's object, without a reference of its own; null for Nothing.
IDispatch* objectOf(const VARIANT& value);
/// A copy that stands on its own.
k_genutil::Variant copyOf(const VARIANT& value);
/// A number of single precision.
k_genutil::Variant singleVariant(float number);
/// `value` as a value of the type `type` (VT_I2, VT_I4, VT_R4, VT_R8, VT_BOOL, VT_BSTR, VT_DISPATCH;
/// VT_EMPTY: as it is).
k_genutil::Variant converted(const VARIANT& value, VARTYPE type);

bool sameValue(const VARIANT& a, const VARIANT& b);

/// Hands a result back through an argument by reference, in the type that the caller declared. An argument by
/// value stays as it is, like any copy.
void storeResult(VARIANT& argument, const VARIANT& value);

using k_genutil::sameName;

} // namespace kestal
