#pragma once

#include "host/automation_object.h"

#include <initializer_list>

namespace kestal {

/// An automation object of somebody else's, reached by member names. A null object and every refused or
/// failing call throw AutomationError, whose text names the member.
class LateBound {
public:
    explicit LateBound(IDispatch* object) : object_(Ref<IDispatch>::share(object)) {}

    bool has(const std::string& member) const;
    Variant get(const std::string& member) const;
    void put(const std::string& member, const Variant& value) const;
    /// Arguments by reference (VT_BYREF) may be changed by the call.
    Variant call(const std::string& member, std::initializer_list<VARIANT> arguments) const;
    /// An object-valued property.
    LateBound child(const std::string& member) const;
    IDispatch* object() const { return object_.get(); }

private:
    Variant invoke(const std::string& member, WORD flags, std::vector<VARIANT> lastFirst) const;

    Ref<IDispatch> object_;
};

/// An argument by reference for LateBound::call.
VARIANT byReference(BSTR* text);

} // namespace kestal
