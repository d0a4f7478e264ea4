#include "host/late_bound.h"

#include <cstdio>

namespace kestal {
namespace {

HRESULT identify(IDispatch* object, const std::string& member, DISPID& id) {
    k_genutil::Text name(member);
    LPOLESTR names[] = {name.get()};
    return object->GetIDsOfNames(GUID_NULL, names, 1, 0, &id);
}

std::string reasonOf(HRESULT result) {
    switch (result) {
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
        return "the object has no such member";
    case DISP_E_BADPARAMCOUNT:
        return "wrong number of arguments";
    case DISP_E_TYPEMISMATCH:
        return "an argument has the wrong type";
    case DISP_E_OVERFLOW:
        return "an argument is out of range";
    default: {
        char code[16];
        std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
        return std::string("the call failed with ") + code;
    }
    }
}

} // namespace

bool LateBound::has(const std::string& member) const {
    DISPID id = DISPID_UNKNOWN;
    return object_ && SUCCEEDED(identify(object_.get(), member, id));
}

Variant LateBound::get(const std::string& member) const {
    return invoke(member, DISPATCH_PROPERTYGET, {});
}

void LateBound::put(const std::string& member, const Variant& value) const {
    invoke(member, DISPATCH_PROPERTYPUT, {value});
}

Variant LateBound::call(const std::string& member, std::initializer_list<VARIANT> arguments) const {
    return invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
        {std::make_reverse_iterator(arguments.end()), std::make_reverse_iterator(arguments.begin())});
}

LateBound LateBound::child(const std::string& member) const {
    return LateBound(objectOf(get(member)));
}

Variant LateBound::invoke(const std::string& member, WORD flags, std::vector<VARIANT> lastFirst) const {
    if (!object_)
        throw AutomationError(errors::ObjectNotSet, member + ": there is no object");
    DISPID id = DISPID_UNKNOWN;
    if (const HRESULT result = identify(object_.get(), member, id); FAILED(result))
        throw AutomationError(errors::NoSuchMember, member + ": " + reasonOf(result));
    DISPID putName = DISPID_PROPERTYPUT;
    const bool isPut = flags == DISPATCH_PROPERTYPUT;
    DISPPARAMS params{
        lastFirst.data(), isPut ? &putName : nullptr, static_cast<UINT>(lastFirst.size()), isPut ? 1u : 0u};
    Variant value;
    EXCEPINFO exception{};
    UINT argument = 0;
    const HRESULT result =
        object_->Invoke(id, GUID_NULL, 0, flags, &params, isPut ? nullptr : &value, &exception, &argument);
    if (SUCCEEDED(result))
        return value;
    if (result != DISP_E_EXCEPTION)
        throw AutomationError(errors::AutomationFailure, member + ": " + reasonOf(result));
    const auto texts = k_genutil::takeTexts(exception);
    const int number = exception.wCode ? exception.wCode : exception.scode & 0xFFFF;
    throw AutomationError(number, texts.description, texts.source);
}

VARIANT byReference(BSTR* text) {
    VARIANT argument;
    VariantInit(&argument);
    argument.vt = VT_BYREF | VT_BSTR;
    argument.pbstrVal = text;
    return argument;
}

} // namespace kestal
