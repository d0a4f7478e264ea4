#pragma once

#include "host/automation_values.h"

#include <atomic>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace kestal {

using k_genutil::Ref;
using k_genutil::Variant;

/// Error numbers that host objects raise.
namespace errors {
inline constexpr int InvalidCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int TypeMismatch = 13;
inline constexpr int FileNotFound = 53;
inline constexpr int PathAccess = 75;
inline constexpr int ObjectNotSet = 91;
inline constexpr int NoSuchMember = 438;
inline constexpr int AutomationFailure = 440;
} // namespace errors

/// A failure as it crosses the automation face: EXCEPINFO's number, description and source.
class AutomationError : public std::runtime_error {
public:
    AutomationError(int number, const std::string& description, std::string source = {})
        : std::runtime_error(description), number_(number), source_(std::move(source)) {}
    int number() const { return number_; }
    const std::string& source() const { return source_; }

private:
    int number_;
    std::string source_;
};

/// A refused argument; `position` counts from 0 in the order in which the caller wrote the arguments.
class ArgumentError : public ConversionError {
public:
    ArgumentError(const ConversionError& fault, std::size_t position)
        : ConversionError(fault), position_(position) {}
    std::size_t position() const { return position_; }

private:
    std::size_t position_;
};

/// The arguments of one call, in the order in which the caller wrote them.
class Arguments {
public:
    explicit Arguments(std::span<VARIANTARG> lastFirst) : lastFirst_(lastFirst) {}
    std::size_t size() const { return lastFirst_.size(); }
    VARIANT& operator[](std::size_t position) const { return lastFirst_[lastFirst_.size() - 1 - position]; }

private:
    std::span<VARIANTARG> lastFirst_;
};

namespace detail {

template<class T>
T fromVariant(const VARIANT& value) {
    if constexpr (std::is_same_v<T, std::string>)
        return textOf(value);
    else if constexpr (std::is_same_v<T, bool>)
        return truthOf(value);
    else if constexpr (std::is_same_v<T, std::int16_t>)
        return int16Of(value);
    else if constexpr (std::is_same_v<T, std::int32_t>)
        return int32Of(value);
    else if constexpr (std::is_same_v<T, double>)
        return numberOf(value);
    else if constexpr (std::is_same_v<T, IDispatch*>)
        return objectOf(value);
    else {
        static_assert(std::is_same_v<T, Variant>, "not an automation type");
        return copyOf(value);
    }
}

inline Variant toVariant(const std::string& text) {
    return Variant(std::string_view(text));
}
inline Variant toVariant(Variant value) {
    return value;
}
template<class T>
requires std::is_arithmetic_v<T> Variant toVariant(T value) {
    return Variant(value);
}
template<class Interface>
Variant toVariant(const Ref<Interface>& object) {
    return Variant(static_cast<IDispatch*>(object.get()));
}

/// One argument as the member's C++ parameter wants it. A `T&` parameter is handed back to the caller.
template<class Parameter>
class Argument {
public:
    using T = std::remove_cvref_t<Parameter>;
    Argument(const Arguments& arguments, std::size_t position)
        : origin_(arguments[position]), position_(position),
          value_(guarded([&] { return fromVariant<T>(origin_); })) {}
    T& pass() { return value_; }
    void handBack() {
        if constexpr (std::is_lvalue_reference_v<Parameter> &&
                      !std::is_const_v<std::remove_reference_t<Parameter>>)
            guarded([&] { storeResult(origin_, toVariant(value_)); });
    }

private:
    template<class Body>
    auto guarded(Body body) {
        try {
            return body();
        } catch (const ConversionError& fault) {
            throw ArgumentError(fault, position_);
        }
    }
    VARIANT& origin_;
    std::size_t position_;
    T value_;
};

template<class R, class... A, std::size_t... I>
Variant invoke(const std::function<R(A...)>& body, const Arguments& arguments, std::index_sequence<I...>) {
    [[maybe_unused]] std::tuple<Argument<A>...> passed{Argument<A>(arguments, I)...};
    if constexpr (std::is_void_v<R>) {
        body(std::get<I>(passed).pass()...);
        (std::get<I>(passed).handBack(), ...);
        return Variant();
    } else {
        Variant result = toVariant(body(std::get<I>(passed).pass()...));
        (std::get<I>(passed).handBack(), ...);
        return result;
    }
}

} // namespace detail

/// A host object that others reach by member names: IDispatch over a table of members, which a derived class
/// fills in its constructor. Born with one reference.
///
/// The C++ types of a method's parameters say how its arguments are converted (std::string, bool,
/// std::int16_t, std::int32_t, double, IDispatch*, Variant); what a `T&` parameter holds at the end goes back
/// to the caller. A member fails by throwing AutomationError. User-interface thread only.
class AutomationObject : public IDispatch {
public:
    /// `className` is the source of the errors that the object raises.
    explicit AutomationObject(std::string className) : className_(std::move(className)) {}
    AutomationObject(const AutomationObject&) = delete;
    virtual ~AutomationObject() = default;

    const std::string& className() const { return className_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(
        REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* params,
        VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

protected:
    using Getter = std::function<Variant()>;
    using Setter = std::function<void(const VARIANT&)>;

    template<class F>
    void method(const char* name, F body) {
        addMethod(name, std::function(std::move(body)));
    }
    /// Read-only without a setter.
    void property(const char* name, Getter get, Setter put = {}) {
        members_.push_back({name, 0, {}, std::move(get), std::move(put)});
    }

private:
    struct Member {
        std::string name;
        std::size_t argumentCount;
        std::function<Variant(const Arguments&)> call;
        Getter get;
        Setter put;
    };

    template<class R, class... A>
    void addMethod(const char* name, std::function<R(A...)> body) {
        members_.push_back({name, sizeof...(A),
            [body = std::move(body)](const Arguments& arguments) {
                return detail::invoke(body, arguments, std::index_sequence_for<A...>());
            },
            {}, {}});
    }
    HRESULT perform(const Member& member, WORD flags, const DISPPARAMS& params, VARIANT* result);
    HRESULT raise(
        int number, const std::string& source, const std::string& description, EXCEPINFO* exception) const;

    std::string className_;
    std::vector<Member> members_;
    std::atomic<ULONG> references_{1};
};

} // namespace kestal
