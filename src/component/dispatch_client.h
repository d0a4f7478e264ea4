#pragma once

#include "component/variant.h"

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace genutil {

// A late-bound automation object of the host. Errors of its members keep their number, description and
// source; a member that it lacks is NoSuchMember, a value of an unfit kind TypeMismatch, and the description
// then names the object and the member.
class DispatchClient {
public:
    // `name` stands for the object in error texts, such as "errHandler". The object is not null.
    DispatchClient(k_genutil::Ref<IDispatch> object, std::string name);

    IDispatch* object() const { return object_.get(); }
    const std::string& name() const { return name_; }

    k_genutil::Variant get(std::string_view member) const;
    void put(std::string_view member, k_genutil::Variant value) const;
    // The arguments in order; one with VT_BYREF lets the member write into what it refers to.
    k_genutil::Variant call(
        std::string_view member, std::initializer_list<k_genutil::Variant> arguments) const;

    // A result of `member` as a value or as an object (null for Nothing).
    Value valueOf(const k_genutil::Variant& result, std::string_view member) const;
    k_genutil::Ref<IDispatch> objectOf(const k_genutil::Variant& result, std::string_view member) const;

private:
    DISPID find(std::string_view member) const;
    k_genutil::Variant invoke(
        std::string_view member, WORD flags, std::vector<k_genutil::Variant>& reversed) const;

    k_genutil::Ref<IDispatch> object_;
    std::string name_;
    mutable std::map<std::string, DISPID, std::less<>> ids_;
};

// A text that a called member may change.
class TextArgument {
public:
    explicit TextArgument(const std::string& text) : text_(text) {}
    k_genutil::Variant reference();
    std::string utf8() const { return text_.utf8(); }

private:
    k_genutil::Text text_;
};

} // namespace genutil
