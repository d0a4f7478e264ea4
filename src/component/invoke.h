#pragma once

#include "component/variant.h"

#include <k_genutil/interfaces.h>

#include <array>
#include <cstddef>
#include <span>
#include <type_traits>

namespace genutil {

// Late-bound calls to the dual interfaces. One constexpr table per interface names its members in slot order;
// parameter types come from the functions themselves, and a table that contradicts them does not compile.

struct Parameter {
    const char* name = nullptr;
    VARTYPE type = VT_EMPTY; // VT_BSTR, VT_I2, VT_BOOL or VT_DISPATCH
    bool optional = false;
    bool byReference = false;
};

// The words that tables are written in.
namespace tables {

constexpr Parameter text(const char* name) {
    return {name, VT_BSTR};
}
constexpr Parameter integer(const char* name) {
    return {name, VT_I2};
}
constexpr Parameter boolean(const char* name) {
    return {name, VT_BOOL};
}
constexpr Parameter object(const char* name) {
    return {name, VT_DISPATCH};
}
constexpr Parameter optional(Parameter parameter) {
    parameter.optional = true;
    return parameter;
}

} // namespace tables

struct Member {
    static constexpr std::size_t mostParameters = 11;
    // Calls the member on the interface; arguments[i] points to the i-th argument in its own type, the
    // result's place last. A null pointer stands for an omitted optional argument.
    using Call = HRESULT (*)(IDispatch& self, void* const* arguments);

    const char* name = nullptr;
    DISPID id = 0;
    WORD flags = 0; // the one of DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT that it is
    VARTYPE result = VT_EMPTY;
    std::array<Parameter, mostParameters> parameters{};
    std::size_t count = 0;
    Call call = nullptr;
};

namespace detail {

template<class T>
constexpr bool holds(VARTYPE type) {
    return std::is_same_v<T, BSTR>           ? type == VT_BSTR
           : std::is_same_v<T, IDispatch*>   ? type == VT_DISPATCH
           : std::is_same_v<T, std::int16_t> ? type == VT_I2 || type == VT_BOOL
                                             : false;
}

template<class Argument>
Argument argumentAt(void* const* arguments, std::size_t index) {
    if constexpr (std::is_same_v<Argument, std::int16_t>)
        return *static_cast<std::int16_t*>(arguments[index]);
    else
        return static_cast<Argument>(arguments[index]);
}

template<auto Function, class Interface, class... Arguments>
constexpr Member makeMember(HRESULT (STDMETHODCALLTYPE Interface::*)(Arguments...), const char* name,
    WORD flags, std::span<const Parameter> parameters, VARTYPE result) {
    Member member{.name = name, .flags = flags, .result = result};
    constexpr std::size_t arity = sizeof...(Arguments);
    if (parameters.size() + (result == VT_EMPTY ? 0 : 1) != arity)
        throw "the table names another number of parameters than the function has";
    for (const Parameter& parameter : parameters)
        member.parameters[member.count++] = parameter;

    std::size_t index = 0;
    [[maybe_unused]] const auto check = [&]<class Argument>(std::type_identity<Argument>) {
        const VARTYPE type = index < member.count ? member.parameters[index].type : result;
        if (!holds<std::remove_pointer_t<Argument>>(type) && !holds<Argument>(type))
            throw "the table gives a parameter another type than the function has";
        if (index < member.count)
            member.parameters[index].byReference = !holds<Argument>(type);
        ++index;
    };
    (check(std::type_identity<Arguments>{}), ...);

    member.call = [](IDispatch& self, void* const* arguments) {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return (static_cast<Interface&>(self).*Function)(argumentAt<Arguments>(arguments, I)...);
        }
        (std::make_index_sequence<arity>());
    };
    return member;
}

} // namespace detail

namespace tables {

// A member without a result.
template<auto Function, class... Parameters>
consteval Member method(const char* name, Parameters... parameters) {
    const std::array<Parameter, sizeof...(parameters)> list{parameters...};
    return detail::makeMember<Function>(Function, name, DISPATCH_METHOD, list, VT_EMPTY);
}

// A member whose last parameter is its Boolean result.
template<auto Function, class... Parameters>
consteval Member function(const char* name, Parameters... parameters) {
    const std::array<Parameter, sizeof...(parameters)> list{parameters...};
    return detail::makeMember<Function>(Function, name, DISPATCH_METHOD, list, VT_BOOL);
}

template<auto Function>
consteval Member get(const char* name, VARTYPE type) {
    return detail::makeMember<Function>(Function, name, DISPATCH_PROPERTYGET, {}, type);
}

template<auto Function>
consteval Member put(const char* name, VARTYPE type) {
    const std::array<Parameter, 1> list{Parameter{"value", type}};
    return detail::makeMember<Function>(Function, name, DISPATCH_PROPERTYPUT, list, VT_EMPTY);
}

// The members in slot order with their identifiers: a property's get and put share one, and the numbers
// ascend.
template<class... Members>
consteval std::array<Member, sizeof...(Members)> memberTable(Members... members) {
    std::array<Member, sizeof...(Members)> table{members...};
    DISPID id = 0;
    for (Member& member : table)
        member.id = member.flags == DISPATCH_PROPERTYPUT ? id : ++id;
    return table;
}

} // namespace tables

// IDispatch::GetIDsOfNames: a member's name, then names of its parameters, which are numbered from 0.
HRESULT findNames(
    std::span<const Member> table, REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) noexcept;

// IDispatch::Invoke. Arguments are taken by value and by reference, in any type that converts; what the
// member changes is written back through the caller's references in the caller's types. Named and omitted
// arguments are allowed. Errors of the arguments: DISP_E_MEMBERNOTFOUND, _BADPARAMCOUNT, _PARAMNOTOPTIONAL,
// _PARAMNOTFOUND, _TYPEMISMATCH and _OVERFLOW (`argument` is the index in rgvarg); an error of the member:
// DISP_E_EXCEPTION with the EXCEPINFO filled.
HRESULT invokeMember(std::span<const Member> table, IDispatch& self, DISPID id, REFIID reserved, WORD flags,
    DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept;

} // namespace genutil
