#include "host/automation_object.h"

#include <algorithm>
#include <new>

namespace kestal {

HRESULT AutomationObject::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch)
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDispatch*>(this);
    return S_OK;
}

ULONG AutomationObject::Release() {
    const ULONG left = --references_;
    if (left == 0)
        delete this;
    return left;
}

HRESULT AutomationObject::GetTypeInfoCount(UINT* count) {
    if (!count)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info)
        *info = nullptr;
    return E_NOTIMPL;
}

HRESULT AutomationObject::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (reserved != GUID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids || count == 0)
        return E_INVALIDARG;
    // Members take their arguments by position only, so every name after the first is unknown.
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const std::u16string_view units(reinterpret_cast<const char16_t*>(names[0]));
    const std::string name = k_genutil::toUtf8(names[0], units.size());
    const auto found =
        std::ranges::find_if(members_, [&](const Member& member) { return sameName(member.name, name); });
    if (found == members_.end())
        return DISP_E_UNKNOWNNAME;
    ids[0] = static_cast<DISPID>(found - members_.begin()) + 1;
    return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT AutomationObject::Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* params,
    VARIANT* result, EXCEPINFO* exception, UINT* argument) {
    if (reserved != GUID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    if (!params)
        return E_INVALIDARG;
    if (id < 1 || static_cast<std::size_t>(id) > members_.size())
        return DISP_E_MEMBERNOTFOUND;
    const auto self = Ref<IDispatch>::share(this); // the call may drop the caller's last reference
    try {
        return perform(members_[static_cast<std::size_t>(id) - 1], flags, *params, result);
    } catch (const ArgumentError& fault) {
        if (argument)
            *argument = static_cast<UINT>(params->cArgs - 1 - fault.position());
        return fault.result();
    } catch (const ConversionError& fault) {
        return raise(errors::TypeMismatch, className_, fault.what(), exception);
    } catch (const AutomationError& error) {
        return raise(
            error.number(), error.source().empty() ? className_ : error.source(), error.what(), exception);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        return raise(errors::AutomationFailure, className_, error.what(), exception);
    } catch (...) {
        return raise(errors::AutomationFailure, className_, "unknown failure", exception);
    }
}

HRESULT AutomationObject::perform(
    const Member& member, WORD flags, const DISPPARAMS& params, VARIANT* result) {
    const Arguments arguments({params.rgvarg, params.cArgs});
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        if (!member.put)
            return DISP_E_MEMBERNOTFOUND;
        if (params.cNamedArgs > 1 ||
            (params.cNamedArgs == 1 && params.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
            return DISP_E_NONAMEDARGS;
        if (arguments.size() != 1)
            return DISP_E_BADPARAMCOUNT;
        try {
            member.put(arguments[0]);
        } catch (const ConversionError& fault) {
            throw ArgumentError(fault, 0);
        }
        return S_OK;
    }
    if (!(member.call && flags & DISPATCH_METHOD) && !(member.get && flags & DISPATCH_PROPERTYGET))
        return DISP_E_MEMBERNOTFOUND;
    if (params.cNamedArgs != 0)
        return DISP_E_NONAMEDARGS;
    if (arguments.size() != member.argumentCount)
        return DISP_E_BADPARAMCOUNT;
    Variant value = member.call ? member.call(arguments) : member.get();
    if (result) {
        *result = value;
        VariantInit(&value);
    }
    return S_OK;
}

HRESULT AutomationObject::raise(
    int number, const std::string& source, const std::string& description, EXCEPINFO* exception) const {
    if (exception) {
        *exception = {};
        exception->bstrSource = k_genutil::newBstr(source);
        exception->bstrDescription = k_genutil::newBstr(description);
        exception->scode = resultCode(0x800A0000u + static_cast<unsigned>(number));
    }
    return DISP_E_EXCEPTION;
}

} // namespace kestal
