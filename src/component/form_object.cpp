#include "component/form_object.h"

#include "component/com_object.h"
#include "component/error_info.h"
#include "component/variant.h"
#include "hostif/form.h"
#include "hostif/grid.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace genutil {
namespace {

using k_genutil::Ref;
using k_genutil::Variant;

// Late-bound objects number their members as the names are asked for, all from one list. Only names that some
// object has are entered, so the list stays small.
std::vector<std::string>& memberNames() {
    static std::vector<std::string> names;
    return names;
}

DISPID idOf(std::string_view name) {
    auto& names = memberNames();
    const auto found = std::ranges::find(names, text::asciiLower(name));
    const auto position = found - names.begin();
    if (found == names.end())
        names.push_back(text::asciiLower(name));
    return static_cast<DISPID>(position + 1);
}

const std::string& nameOf(DISPID id) {
    const auto& names = memberNames();
    if (id < 1 || static_cast<std::size_t>(id) > names.size())
        throw Error(errors::NoSuchMember);
    return names[static_cast<std::size_t>(id) - 1];
}

struct Call {
    const std::string& name; // in lower case
    WORD flags;
    std::vector<Variant> arguments; // first one first

    bool isPut() const { return flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF); }
};

class LateBound : public DispatchObject<IDispatch> {
public:
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (count == 0 || !names || !names[0] || !ids)
            return E_INVALIDARG;
        std::fill_n(ids, count, DISPID_UNKNOWN);
        bool known = false;
        const HRESULT result = guarded([&] {
            const std::string name = k_genutil::toUtf8(names[0], std::char_traits<OLECHAR>::length(names[0]));
            known = has(text::asciiLower(name));
            if (known)
                ids[0] = idOf(name);
        });
        return FAILED(result) ? result : known && count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
        EXCEPINFO* exception, UINT*) override {
        if (!params || (params->cArgs > 0 && !params->rgvarg))
            return E_INVALIDARG;
        const auto self = Ref<IUnknown>::share(this);
        const HRESULT outcome = guarded([&] {
            Call request{nameOf(id), flags, {}};
            for (UINT i = params->cArgs; i-- > 0;)
                request.arguments.push_back(dereferenced(params->rgvarg[i]));
            if (request.isPut() && request.arguments.size() != 1)
                throw Error(errors::InvalidCall, "An assignment takes one value");
            Variant answer = invoke(request);
            if (result) {
                VariantInit(result);
                std::swap(*result, static_cast<VARIANT&>(answer));
            }
        });
        return FAILED(outcome) ? fillException(outcome, exception) : S_OK;
    }

protected:
    void* find(REFIID iid) override {
        return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : DispatchObject::find(iid);
    }
    // Names are in lower case.
    virtual bool has(const std::string& name) = 0;
    virtual Variant invoke(const Call& call) = 0;
};

Variant asVariant(Control* control) {
    const auto object = control ? automationObject(*control) : Ref<IDispatch>();
    return Variant(object.get());
}

Control* controlNamed(Form& form, const std::string& lowerName) {
    const auto& all = form.controls();
    const auto found =
        std::ranges::find(all, lowerName, [](const Control* c) { return text::asciiLower(c->name()); });
    return found == all.end() ? nullptr : *found;
}

std::shared_ptr<Form> lockForm(const std::weak_ptr<Form>& form) {
    if (auto held = form.lock())
        return held;
    throw Error(errors::ObjectNotSet, "The form has been closed");
}

class ControlCollection final : public LateBound {
public:
    explicit ControlCollection(Form& form) : form_(form.weak_from_this()) {}

private:
    bool has(const std::string& name) override { return name == "count" || name == "item"; }

    Variant invoke(const Call& call) override {
        const auto form = lockForm(form_);
        const auto& all = form->controls();
        if (call.isPut())
            throw Error(errors::InvalidCall, "The collection of controls is read-only");
        if (call.name == "count")
            return Variant(static_cast<std::int32_t>(all.size()));
        if (call.name != "item" || call.arguments.size() != 1)
            throw Error(errors::NoSuchMember);
        const Value key = toValue(call.arguments[0]);
        Control* found = nullptr;
        if (key.isText())
            found = controlNamed(*form, text::asciiLower(key.toText()));
        else if (const auto index = key.toInt32(); index >= 0 && static_cast<std::size_t>(index) < all.size())
            found = all[static_cast<std::size_t>(index)];
        if (!found)
            throw Error(errors::OutOfRange, form->name() + " has no control " + key.toText());
        return asVariant(found);
    }

    std::weak_ptr<Form> form_;
};

// Which objects have a member.
enum class Owner { Every, Form, Grid };

// What an object offers besides the properties of its model.
struct ExtraMember {
    std::string_view name; // in lower case
    Owner owner;
    Variant (*use)(Control&, const Call&);
};

// A grid's column width by its number, in twips.
Variant columnWidth(Control& grid, const Call& call) {
    if (call.arguments.size() != 1)
        throw Error(errors::InvalidCall, "'ColWidth' of " + grid.name() + " takes the number of a column");
    return Variant(static_cast<Grid&>(grid).column(toValue(call.arguments[0]).toInt32()).width);
}

constexpr std::array extraMembers{
    ExtraMember{"setfocus", Owner::Every, [](Control& c, const Call&) { return c.setFocus(), Variant(); }},
    ExtraMember{"parent", Owner::Every, [](Control& c, const Call&) { return asVariant(&c.form()); }},
    ExtraMember{"activecontrol", Owner::Form,
        [](Control& c, const Call&) { return asVariant(c.form().activeControl()); }},
    ExtraMember{
        "refresh", Owner::Form, [](Control& c, const Call&) { return c.form().refresh(), Variant(); }},
    ExtraMember{"colwidth", Owner::Grid, columnWidth},
    ExtraMember{"controls", Owner::Form,
        [](Control& c, const Call&) {
            const auto all = Ref<IDispatch>::adopt(new ControlCollection(c.form()));
            return Variant(all.get());
        }},
};

class ControlObject;

// The objects that are alive, so that one control has one identity.
std::map<Control*, ControlObject*>& liveObjects() {
    static std::map<Control*, ControlObject*> objects;
    return objects;
}

class ControlObject final : public LateBound {
public:
    explicit ControlObject(Control& control)
        : control_(&control), form_(control.form().weak_from_this()), isForm_(&control == &control.form()) {
        liveObjects()[control_] = this;
    }

    bool standsFor(const Control& control) const { return form_.lock().get() == &control.form(); }

private:
    ~ControlObject() override {
        if (const auto known = liveObjects().find(control_);
            known != liveObjects().end() && known->second == this)
            liveObjects().erase(known);
    }

    const ExtraMember* extra(const std::string& name) const {
        const auto found = std::ranges::find(extraMembers, std::string_view(name), &ExtraMember::name);
        return found != extraMembers.end() && isOwner(found->owner) ? &*found : nullptr;
    }

    bool isOwner(Owner owner) const {
        return owner == Owner::Every || (owner == Owner::Form && isForm_) ||
               (owner == Owner::Grid && dynamic_cast<Grid*>(control_));
    }

    bool has(const std::string& name) override {
        const auto form = lockForm(form_);
        return control_->findMember(name) || extra(name) || (isForm_ && controlNamed(*form, name));
    }

    Variant invoke(const Call& call) override {
        const auto form = lockForm(form_);
        if (control_->findMember(call.name)) {
            if (!call.isPut())
                return toVariant(control_->readMember(call.name));
            control_->writeMember(call.name, toValue(call.arguments[0]));
            return Variant();
        }
        const ExtraMember* const member = extra(call.name);
        Control* const named = isForm_ ? controlNamed(*form, call.name) : nullptr;
        if (!member && !named)
            throw Error(errors::NoSuchMember, control_->name() + " has no member '" + call.name + "'");
        if (call.isPut())
            throw Error(errors::InvalidCall, "'" + call.name + "' of " + control_->name() + " is read-only");
        return member ? member->use(*control_, call) : asVariant(named);
    }

    Control* control_; // valid while the form is
    std::weak_ptr<Form> form_;
    bool isForm_;
};

} // namespace

Ref<IDispatch> automationObject(Control& control) {
    const auto known = liveObjects().find(&control);
    if (known != liveObjects().end() && known->second->standsFor(control))
        return Ref<IDispatch>::share(known->second);
    return Ref<IDispatch>::adopt(new ControlObject(control));
}

} // namespace genutil
