#include "component/invoke.h"

#include "component/error_info.h"

#include <algorithm>
#include <optional>

namespace genutil {
namespace {

using k_genutil::sameName;
using k_genutil::Variant;

bool isMissing(const VARIANT& argument) {
    const VARIANT& v = resolved(argument);
    return v.vt == VT_ERROR && v.scode == DISP_E_PARAMNOTFOUND;
}

// What stops a call before the member runs.
struct Refusal {
    HRESULT result;
    std::optional<UINT> argument;
};

// The place of a plain variant's value, in the value's own type.
void* valueOf(VARIANT& variant) {
    return &variant.llVal;
}

// One argument on its way into a member and back.
class Argument {
public:
    // `source` is null for an omitted argument.
    void bind(const Parameter& parameter, const VARIANT* source) {
        if (!source)
            return;
        const VARIANT& given = resolved(*source);
        if (given.vt & VT_BYREF && !given.byref)
            throw Error(errors::TypeMismatch);
        if (parameter.byReference && given.vt == (parameter.type | VT_BYREF)) {
            place_ = given.byref;
            return;
        }
        value_ = converted(given, parameter.type);
        place_ = valueOf(value_);
        if (parameter.byReference && (given.vt & VT_BYREF || &given != source)) {
            writeBack_ = source;
            before_ = value_;
        }
    }

    void* place() const { return place_; }

    // The caller's variable keeps its value and type unless the member has changed the argument.
    void handBack() const {
        if (writeBack_ && !isUnchanged())
            assignThrough(*writeBack_, value_);
    }

private:
    bool isUnchanged() const {
        if (value_.vt == VT_DISPATCH)
            return value_.pdispVal == before_.pdispVal;
        return toValue(value_) == toValue(before_);
    }

    Variant value_;
    Variant before_;
    void* place_ = nullptr;
    const VARIANT* writeBack_ = nullptr;
};

// Which element of rgvarg each parameter gets; none for an omitted one.
std::array<std::optional<UINT>, Member::mostParameters> assign(
    const Member& member, const DISPPARAMS& params) {
    std::array<std::optional<UINT>, Member::mostParameters> chosen{};
    if (params.cArgs > member.count || params.cNamedArgs > params.cArgs)
        throw Refusal{DISP_E_BADPARAMCOUNT, {}};
    const auto give = [&](std::size_t parameter, UINT index) {
        if (parameter >= member.count || chosen[parameter])
            throw Refusal{DISP_E_PARAMNOTFOUND, index};
        chosen[parameter] = index;
    };
    for (UINT i = params.cNamedArgs; i < params.cArgs; ++i)
        give(params.cArgs - 1 - i, i);
    for (UINT i = 0; i < params.cNamedArgs; ++i) {
        const DISPID id = params.rgdispidNamedArgs[i];
        const bool assigned = id == DISPID_PROPERTYPUT && member.flags == DISPATCH_PROPERTYPUT;
        give(assigned ? 0 : static_cast<std::size_t>(id), i);
    }
    return chosen;
}

HRESULT callMember(
    const Member& member, IDispatch& self, const DISPPARAMS& params, VARIANT* result, EXCEPINFO* exception) {
    const auto chosen = assign(member, params);
    std::array<Argument, Member::mostParameters> arguments;
    std::array<void*, Member::mostParameters + 1> places{};
    for (std::size_t i = 0; i < member.count; ++i) {
        const VARIANT* source = chosen[i] ? &params.rgvarg[*chosen[i]] : nullptr;
        try {
            if (source && isMissing(*source))
                source = nullptr;
            if (!source && !member.parameters[i].optional)
                throw Refusal{DISP_E_PARAMNOTOPTIONAL, chosen[i]};
            arguments[i].bind(member.parameters[i], source);
        } catch (const Error& error) {
            throw Refusal{
                error.number() == errors::Overflow ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH, chosen[i]};
        }
        places[i] = arguments[i].place();
    }

    Variant answer;
    places[member.count] = valueOf(answer);
    const HRESULT outcome = member.call(self, places.data());
    if (FAILED(outcome))
        return fillException(outcome, exception);
    answer.vt = member.result;
    for (std::size_t i = 0; i < member.count; ++i) {
        try {
            arguments[i].handBack();
        } catch (const Error& error) {
            throw Refusal{
                error.number() == errors::Overflow ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH, chosen[i]};
        }
    }
    if (result) {
        VariantInit(result);
        std::swap(*result, static_cast<VARIANT&>(answer));
    }
    return S_OK;
}

} // namespace

HRESULT findNames(
    std::span<const Member> table, REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
    if (reserved != IID{})
        return DISP_E_UNKNOWNINTERFACE;
    if (count == 0 || !names || !ids)
        return E_INVALIDARG;
    try {
        std::fill_n(ids, count, DISPID_UNKNOWN);
        const auto textOf = [&](UINT i) {
            return names[i] ? k_genutil::toUtf8(names[i], std::char_traits<OLECHAR>::length(names[i]))
                            : std::string();
        };
        const std::string memberName = textOf(0);
        const auto member =
            std::ranges::find_if(table, [&](const Member& m) { return sameName(memberName, m.name); });
        if (member == table.end())
            return DISP_E_UNKNOWNNAME;
        ids[0] = member->id;
        HRESULT result = S_OK;
        for (UINT i = 1; i < count; ++i) {
            const std::string parameterName = textOf(i);
            const auto end = member->parameters.begin() + static_cast<std::ptrdiff_t>(member->count);
            const auto found = std::find_if(member->parameters.begin(), end,
                [&](const Parameter& p) { return sameName(parameterName, p.name); });
            if (found == end)
                result = DISP_E_UNKNOWNNAME;
            else
                ids[i] = static_cast<DISPID>(found - member->parameters.begin());
        }
        return result;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT invokeMember(std::span<const Member> table, IDispatch& self, DISPID id, REFIID reserved, WORD flags,
    DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept {
    if (reserved != IID{})
        return DISP_E_UNKNOWNINTERFACE;
    if (!params || (params->cArgs > 0 && !params->rgvarg) ||
        (params->cNamedArgs > 0 && !params->rgdispidNamedArgs))
        return E_INVALIDARG;
    if (flags & DISPATCH_PROPERTYPUTREF)
        flags |= DISPATCH_PROPERTYPUT;
    const auto member =
        std::ranges::find_if(table, [&](const Member& m) { return m.id == id && (m.flags & flags) != 0; });
    if (member == table.end())
        return DISP_E_MEMBERNOTFOUND;
    try {
        return callMember(*member, self, *params, result, exception);
    } catch (const Refusal& refusal) {
        if (argument && refusal.argument)
            *argument = *refusal.argument;
        return refusal.result;
    } catch (...) {
        return fillException(reportException(std::current_exception()), exception);
    }
}

} // namespace genutil
