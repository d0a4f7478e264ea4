#include "component/dispatch_client.h"

#include "component/error_info.h"

#include <algorithm>

namespace genutil {

using k_genutil::Ref;
using k_genutil::Variant;

DispatchClient::DispatchClient(Ref<IDispatch> object, std::string name)
    : object_(std::move(object)), name_(std::move(name)) {
    if (!object_)
        throw Error(errors::ObjectNotSet, name_ + " is Nothing");
}

DISPID DispatchClient::find(std::string_view member) const {
    if (const auto known = ids_.find(member); known != ids_.end())
        return known->second;
    k_genutil::Text name(member);
    LPOLESTR units = name.get();
    DISPID id = DISPID_UNKNOWN;
    const HRESULT result = object_->GetIDsOfNames(IID{}, &units, 1, 0, &id);
    if (FAILED(result)) {
        const int number = numberOf(result);
        throw Error(number == errors::AutomationError ? errors::NoSuchMember : number,
            name_ + " has no member '" + std::string(member) + "'");
    }
    ids_.emplace(member, id);
    return id;
}

Variant DispatchClient::invoke(std::string_view member, WORD flags, std::vector<Variant>& reversed) const {
    const DISPID id = find(member);
    const Ref<IDispatch> held = object_; // the call may end this client
    std::vector<VARIANT> arguments(reversed.begin(), reversed.end());
    DISPID assigned = DISPID_PROPERTYPUT;
    const bool isPut = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
    DISPPARAMS params{
        arguments.data(), isPut ? &assigned : nullptr, static_cast<UINT>(arguments.size()), isPut ? 1u : 0u};
    EXCEPINFO exception{};
    UINT argument = 0;
    Variant answer;
    const HRESULT result =
        held->Invoke(id, IID{}, 0, flags, &params, isPut ? nullptr : &answer, &exception, &argument);
    if (result == DISP_E_EXCEPTION) {
        const auto texts = k_genutil::takeTexts(exception);
        const int number = exception.wCode != 0 ? exception.wCode : numberOf(exception.scode);
        throw Error(number, texts.description, texts.source);
    }
    if (FAILED(result)) {
        const int number = numberOf(result);
        const std::string what = number == errors::NoSuchMember ? " is not a member that can be used this way"
                                 : number == errors::TypeMismatch
                                     ? " does not take a value of this type"
                                     : " has failed: " + standardDescription(number);
        throw Error(number, "'" + std::string(member) + "' of " + name_ + what);
    }
    return answer;
}

Variant DispatchClient::get(std::string_view member) const {
    std::vector<Variant> none;
    return invoke(member, DISPATCH_PROPERTYGET | DISPATCH_METHOD, none);
}

void DispatchClient::put(std::string_view member, Variant value) const {
    const WORD flags = value.vt == VT_DISPATCH ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
    std::vector<Variant> arguments;
    arguments.push_back(std::move(value));
    invoke(member, flags, arguments);
}

Variant DispatchClient::call(std::string_view member, std::initializer_list<Variant> arguments) const {
    std::vector<Variant> reversed(
        std::make_reverse_iterator(arguments.end()), std::make_reverse_iterator(arguments.begin()));
    return invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, reversed);
}

Value DispatchClient::valueOf(const Variant& result, std::string_view member) const {
    try {
        return toValue(result);
    } catch (const Error& error) {
        throw Error(error.number(), "'" + std::string(member) + "' of " + name_ + " does not give a value");
    }
}

Ref<IDispatch> DispatchClient::objectOf(const Variant& result, std::string_view member) const {
    try {
        const Variant found = converted(result, VT_DISPATCH);
        return Ref<IDispatch>::share(found.pdispVal);
    } catch (const Error& error) {
        throw Error(error.number(), "'" + std::string(member) + "' of " + name_ + " does not give an object");
    }
}

Variant TextArgument::reference() {
    Variant reference;
    reference.vt = VT_BSTR | VT_BYREF;
    reference.pbstrVal = text_.inOut();
    return reference;
}

} // namespace genutil
