#include "component/variant.h"

#include "hostif/error.h"

namespace genutil {
namespace {

using k_genutil::Variant;

[[noreturn]] void mismatch() {
    throw Error(errors::TypeMismatch);
}

bool isObject(VARTYPE type) {
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

// The zero of a type, which Empty stands for.
Value zeroOf(VARTYPE type) {
    return type == VT_BSTR || type == VT_EMPTY || type == VT_VARIANT ? Value("") : Value(std::int16_t{0});
}

Variant objectAs(const VARIANT& object, VARTYPE type) {
    Variant result;
    result.vt = type;
    if (!object.punkVal)
        return result;
    const HRESULT answer = object.punkVal->QueryInterface(
        type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown, reinterpret_cast<void**>(&result.punkVal));
    if (FAILED(answer)) {
        result.punkVal = nullptr;
        mismatch();
    }
    return result;
}

} // namespace

const VARIANT& resolved(const VARIANT& variant) {
    const VARIANT* const end = k_genutil::referredVariant(variant);
    if (!end)
        mismatch();
    return *end;
}

Variant dereferenced(const VARIANT& variant) {
    const auto plain = k_genutil::plainValue(variant);
    if (!plain || plain->vt & VT_ARRAY)
        mismatch();
    Variant copy;
    VariantCopy(&copy, const_cast<VARIANT*>(&*plain));
    return copy;
}

Value toValue(const VARIANT& variant) {
    const VARIANT& source = resolved(variant);
    if (source.vt & VT_BYREF)
        return toValue(dereferenced(source));
    switch (source.vt) {
    case VT_EMPTY:
        return Value("");
    case VT_NULL:
        return Value(Null{});
    case VT_BOOL:
        return Value(source.boolVal != VARIANT_FALSE);
    case VT_UI1:
        return Value(source.bVal);
    case VT_I2:
        return Value(source.iVal);
    case VT_I4:
        return Value(std::int32_t{source.lVal});
    case VT_R4:
        return Value(source.fltVal);
    case VT_R8:
        return Value(source.dblVal);
    case VT_DATE:
        return Value(source.date);
    case VT_CY:
        return Value(static_cast<double>(source.llVal) / 10000.0);
    case VT_BSTR:
        return Value(k_genutil::toUtf8(source.bstrVal));
    default:
        mismatch();
    }
}

Variant toVariant(const Value& value) {
    struct Maker {
        Variant operator()(Null) const {
            Variant null;
            null.vt = VT_NULL;
            return null;
        }
        Variant operator()(bool v) const { return Variant(v); }
        Variant operator()(std::uint8_t v) const {
            Variant byte;
            byte.vt = VT_UI1;
            byte.bVal = v;
            return byte;
        }
        Variant operator()(std::int16_t v) const { return Variant(v); }
        Variant operator()(std::int32_t v) const { return Variant(v); }
        Variant operator()(float v) const {
            Variant single;
            single.vt = VT_R4;
            single.fltVal = v;
            return single;
        }
        Variant operator()(double v) const { return Variant(v); }
        Variant operator()(const std::string& v) const { return Variant(std::string_view(v)); }
    };
    return std::visit(Maker{}, value.storage());
}

Variant toVariant(const Value& value, VARTYPE type) {
    switch (type) {
    case VT_EMPTY:
    case VT_VARIANT:
        return toVariant(value);
    case VT_BOOL:
        return toVariant(Value(value.toBool()));
    case VT_UI1:
        return toVariant(Value(value.toByte()));
    case VT_I2:
        return toVariant(Value(value.toInt16()));
    case VT_I4:
        return toVariant(Value(value.toInt32()));
    case VT_R4:
        return toVariant(Value(value.toSingle()));
    case VT_R8:
        return toVariant(Value(value.toDouble()));
    case VT_DATE: {
        Variant date(value.toDouble());
        date.vt = VT_DATE;
        return date;
    }
    case VT_BSTR:
        return toVariant(Value(value.toText()));
    default:
        mismatch();
    }
}

Variant converted(const VARIANT& variant, VARTYPE type) {
    const Variant source = dereferenced(variant);
    if (isObject(source.vt) != isObject(type))
        mismatch();
    if (isObject(type))
        return objectAs(source, type);
    return toVariant(source.vt == VT_EMPTY ? zeroOf(type) : toValue(source), type);
}

void assignThrough(const VARIANT& reference, const VARIANT& value) {
    const VARIANT& target = resolved(reference);
    if (!(target.vt & VT_BYREF)) { // a variant that another variant refers to
        auto& holder = const_cast<VARIANT&>(target);
        const bool untyped = holder.vt == VT_EMPTY || holder.vt == VT_NULL;
        Variant fresh = untyped ? dereferenced(value) : converted(value, holder.vt);
        std::swap(holder, static_cast<VARIANT&>(fresh));
        return;
    }
    Variant fresh = converted(value, target.vt & VT_TYPEMASK);
    switch (fresh.vt) {
    case VT_UI1:
        *target.pbVal = fresh.bVal;
        break;
    case VT_I2:
        *target.piVal = fresh.iVal;
        break;
    case VT_BOOL:
        *target.pboolVal = fresh.boolVal;
        break;
    case VT_I4:
        *target.plVal = fresh.lVal;
        break;
    case VT_R4:
        *target.pfltVal = fresh.fltVal;
        break;
    case VT_R8:
        *target.pdblVal = fresh.dblVal;
        break;
    case VT_DATE:
        *target.pdate = fresh.date;
        break;
    case VT_BSTR:
        std::swap(*target.pbstrVal, fresh.bstrVal);
        break;
    case VT_DISPATCH:
        std::swap(*target.ppdispVal, fresh.pdispVal);
        break;
    case VT_UNKNOWN:
        std::swap(*target.ppunkVal, fresh.punkVal);
        break;
    default:
        mismatch();
    }
}

} // namespace genutil
