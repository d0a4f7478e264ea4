#include "host/automation_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace kestal {
namespace {

using k_genutil::Variant;

[[noreturn]] void mismatch(const std::string& text) {
    throw ConversionError(DISP_E_TYPEMISMATCH, text);
}

double parsedNumber(const std::string& text) {
    constexpr const char* blanks = " \t";
    const auto first = text.find_first_not_of(blanks);
    const auto last = text.find_last_not_of(blanks);
    if (first == text.npos)
        mismatch("a number is needed, not an empty text");
    double number = 0;
    const char* const begin = text.data() + first + (text[first] == '+' ? 1 : 0);
    const char* const end = text.data() + last + 1;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error == std::errc::result_out_of_range)
        throw ConversionError(DISP_E_OVERFLOW, "the number " + text + " is too large");
    if (error != std::errc() || stop != end || !std::isfinite(number))
        mismatch("a number is needed, not '" + text + "'");
    return number;
}

template<class Integer>
Integer integerOf(const VARIANT& value) {
    const double number = std::nearbyint(numberOf(value));
    // Written so that a NaN is refused too.
    if (!(number >= std::numeric_limits<Integer>::min() && number <= std::numeric_limits<Integer>::max()))
        throw ConversionError(DISP_E_OVERFLOW,
            "the number must be between " + std::to_string(std::numeric_limits<Integer>::min()) + " and " +
                std::to_string(std::numeric_limits<Integer>::max()));
    return static_cast<Integer>(number);
}

} // namespace

VARIANT dereferenced(const VARIANT& value) {
    const auto plain = k_genutil::plainValue(value);
    if (!plain)
        mismatch("an argument by reference must refer to a single value");
    return *plain;
}

std::string textOf(const VARIANT& value) {
    const VARIANT plain = dereferenced(value);
    switch (plain.vt) {
    case VT_EMPTY:
        return {};
    case VT_BSTR:
        return k_genutil::toUtf8(plain.bstrVal);
    case VT_BOOL:
        return plain.boolVal ? "True" : "False";
    default:
        break;
    }
    char digits[32];
    const auto end = plain.vt == VT_R4 ? std::to_chars(digits, digits + sizeof digits, plain.fltVal)
                                       : std::to_chars(digits, digits + sizeof digits, numberOf(plain));
    return std::string(digits, end.ptr);
}

double numberOf(const VARIANT& value) {
    const VARIANT plain = dereferenced(value);
    switch (plain.vt) {
    case VT_EMPTY:
        return 0;
    case VT_UI1:
        return plain.bVal;
    case VT_I2:
        return plain.iVal;
    case VT_I4:
        return plain.lVal;
    case VT_R4:
        return plain.fltVal;
    case VT_R8:
    case VT_DATE:
        return plain.dblVal;
    case VT_BOOL:
        return plain.boolVal ? -1 : 0;
    case VT_BSTR:
        return parsedNumber(k_genutil::toUtf8(plain.bstrVal));
    case VT_NULL:
        mismatch("a value is needed, not Null");
    default:
        mismatch("a plain value is needed, not one of type " + std::to_string(plain.vt));
    }
}

std::int16_t int16Of(const VARIANT& value) {
    return integerOf<std::int16_t>(value);
}
std::int32_t int32Of(const VARIANT& value) {
    return integerOf<std::int32_t>(value);
}

bool truthOf(const VARIANT& value) {
    const VARIANT plain = dereferenced(value);
    if (plain.vt == VT_BSTR) {
        const std::string text = k_genutil::toUtf8(plain.bstrVal);
        if (sameName(text, "True"))
            return true;
        if (sameName(text, "False"))
            return false;
    }
    return numberOf(plain) != 0;
}

IDispatch* objectOf(const VARIANT& value) {
    const VARIANT plain = dereferenced(value);
    if (plain.vt == VT_EMPTY)
        return nullptr;
    if (plain.vt != VT_DISPATCH)
        mismatch("an object is needed");
    return plain.pdispVal;
}

Variant copyOf(const VARIANT& value) {
    const VARIANT plain = dereferenced(value);
    Variant copy;
    if (VariantCopy(&copy, &plain) != S_OK)
        mismatch("a single value is needed, not an array");
    return copy;
}

Variant singleVariant(float number) {
    Variant single;
    single.vt = VT_R4;
    single.fltVal = number;
    return single;
}

Variant converted(const VARIANT& value, VARTYPE type) {
    switch (type) {
    case VT_R4: {
        const double number = numberOf(value);
        if (std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max()))
            throw ConversionError(DISP_E_OVERFLOW, "the number is outside the range of a single");
        return singleVariant(static_cast<float>(number));
    }
    case VT_I2:
        return Variant(int16Of(value));
    case VT_I4:
        return Variant(int32Of(value));
    case VT_R8:
        return Variant(numberOf(value));
    case VT_BOOL:
        return Variant(truthOf(value));
    case VT_BSTR:
        return Variant(std::string_view(textOf(value)));
    case VT_DISPATCH:
        return Variant(objectOf(value));
    default:
        return copyOf(value);
    }
}

bool sameValue(const VARIANT& a, const VARIANT& b) {
    if (a.vt != b.vt)
        return false;
    if (a.vt == VT_EMPTY || a.vt == VT_NULL)
        return true;
    if (a.vt == VT_DISPATCH)
        return a.pdispVal == b.pdispVal;
    return a.vt == VT_BSTR ? textOf(a) == textOf(b) : numberOf(a) == numberOf(b);
}

void storeResult(VARIANT& argument, const VARIANT& value) {
    if (!(argument.vt & VT_BYREF))
        return;
    switch (argument.vt & VT_TYPEMASK) {
    case VT_VARIANT:
        if (argument.pvarVal->vt & VT_BYREF)
            return storeResult(*argument.pvarVal, value);
        if (VariantCopy(argument.pvarVal, &value) != S_OK)
            mismatch("the result does not fit into the argument");
        return;
    case VT_BSTR: {
        k_genutil::Text text(textOf(value));
        SysFreeString(*argument.pbstrVal);
        *argument.pbstrVal = text.release();
        return;
    }
    case VT_BOOL:
        *argument.pboolVal = truthOf(value) ? VARIANT_TRUE : VARIANT_FALSE;
        return;
    case VT_I2:
        *argument.piVal = int16Of(value);
        return;
    case VT_I4:
        *argument.plVal = int32Of(value);
        return;
    case VT_R8:
        *argument.pdblVal = numberOf(value);
        return;
    default:
        mismatch("a result cannot be handed back in an argument of type " + std::to_string(argument.vt));
    }
}

} // namespace kestal
