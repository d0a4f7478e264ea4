#include "hostif/control.h"

#include "hostif/error.h"
#include "hostif/form.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>

namespace genutil {
namespace {

template<auto Member>
constexpr auto reader = [](Control& control) { return Value((control.*Member).get()); };

template<auto Member, class T>
constexpr auto writer = [](Control& control, const Value& value) { control.*Member = value.to<T>(); };

constexpr std::array baseMembers{
    ScriptMember{"Name", [](Control& c) { return Value(c.name()); }, nullptr},
    ScriptMember{"Left", reader<&Control::left>, writer<&Control::left, double>},
    ScriptMember{"Top", reader<&Control::top>, writer<&Control::top, double>},
    ScriptMember{"Width", reader<&Control::width>, writer<&Control::width, double>},
    ScriptMember{"Height", reader<&Control::height>, writer<&Control::height, double>},
    ScriptMember{"Enabled", reader<&Control::enabled>, writer<&Control::enabled, bool>},
    ScriptMember{"Visible", reader<&Control::visible>, writer<&Control::visible, bool>},
    ScriptMember{"Tag", reader<&Control::tag>, writer<&Control::tag, std::string>},
    ScriptMember{"ToolTipText", reader<&Control::toolTip>, writer<&Control::toolTip, std::string>},
    ScriptMember{"TabIndex", [](Control& c) { return Value(std::int32_t(c.tabIndex)); },
        [](Control& c, const Value& v) { c.tabIndex = v.toInt32(); }},
    ScriptMember{"HelpContextID", [](Control& c) { return Value(std::int32_t(c.helpContextId)); },
        [](Control& c, const Value& v) { c.helpContextId = v.toInt32(); }},
};

} // namespace

Control::Control(Form& form, std::string name) : form_(&form), name_(std::move(name)) {
    form.adopt(*this);
}

Control::Control(Form& form, std::string name, std::nullptr_t) : form_(&form), name_(std::move(name)) {}

Control::~Control() = default;

bool Control::canFocus() const {
    return enabled && visible && tabIndex >= 0;
}

bool Control::hearsUser() const {
    return enabled && form_->hearsUser();
}

void Control::setFocus() {
    form_->moveFocus(this);
}

const ScriptMember* Control::findMember(std::string_view member) const {
    const auto named = [&](const ScriptMember& m) { return text::equalsIgnoringCase(m.name, member); };
    const auto own = ownMembers();
    if (const auto found = std::ranges::find_if(own, named); found != own.end())
        return &*found;
    if (const auto found = std::ranges::find_if(baseMembers, named); found != baseMembers.end())
        return &*found;
    return nullptr;
}

Value Control::readMember(std::string_view member) {
    const ScriptMember* found = findMember(member);
    if (!found)
        throw Error(errors::NoSuchMember, name_ + " has no property '" + std::string(member) + "'");
    return found->read(*this);
}

void Control::writeMember(std::string_view member, const Value& value) {
    const ScriptMember* found = findMember(member);
    if (!found)
        throw Error(errors::NoSuchMember, name_ + " has no property '" + std::string(member) + "'");
    if (!found->write)
        throw Error(
            errors::InvalidCall, "Property '" + std::string(member) + "' of " + name_ + " is read-only");
    found->write(*this, value);
}

} // namespace genutil
