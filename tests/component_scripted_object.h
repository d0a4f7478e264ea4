#pragma once

#include <k_genutil/support.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// A late-bound host object whose members are given one by one. It stands on the public headers alone, as a
// host does.
namespace genutil::fake {

struct ScriptedError {
    int number;
    std::string description;
    std::string source;
};

// The identity and the life of a test's own object: one reference, the maker's, to begin with.
template<class Interface, const IID& iid>
class Counted : public Interface {
public:
    virtual ~Counted() = default;
    HRESULT QueryInterface(REFIID wanted, void** object) override {
        *object = wanted == IID_IUnknown || wanted == iid ? static_cast<Interface*>(this) : nullptr;
        return *object ? (AddRef(), S_OK) : E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++references_; }
    ULONG Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

private:
    ULONG references_ = 1;
};

class ScriptedObject final : public Counted<IDispatch, IID_IDispatch> {
public:
    using Arguments = std::vector<VARIANT*>; // first one first
    using Handler = std::function<k_genutil::Variant(const Arguments&)>;

    static inline int alive = 0;

    std::vector<std::pair<std::string, Handler>> members;
    std::vector<std::string> log; // "Name" or "Name=" for each call, then the texts passed

    ScriptedObject() { ++alive; }
    ~ScriptedObject() override { --alive; }

    ScriptedObject& with(std::string name, Handler handler) {
        members.emplace_back(std::move(name), std::move(handler));
        return *this;
    }
    template<class T>
    ScriptedObject& withValue(std::string name, T value) {
        return with(std::move(name), [value](const Arguments&) { return k_genutil::Variant(value); });
    }

    HRESULT GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        const std::string name = k_genutil::toUtf8(names[0], std::char_traits<OLECHAR>::length(names[0]));
        const auto found = std::ranges::find(members, name, &std::pair<std::string, Handler>::first);
        *ids = found == members.end() ? DISPID_UNKNOWN : DISPID(found - members.begin()) + 1;
        return found == members.end() ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
        EXCEPINFO* exception, UINT*) override {
        const auto& [name, handler] = members[static_cast<std::size_t>(id - 1)];
        Arguments arguments;
        std::string entry = name + (flags & DISPATCH_PROPERTYPUT ? "=" : "");
        for (UINT i = params->cArgs; i-- > 0;) {
            arguments.push_back(&params->rgvarg[i]);
            if (arguments.back()->vt == VT_BSTR)
                entry += "|" + k_genutil::toUtf8(arguments.back()->bstrVal);
        }
        log.push_back(entry);
        try {
            k_genutil::Variant answer = handler(arguments);
            if (result)
                std::swap(*result, static_cast<VARIANT&>(answer));
            return S_OK;
        } catch (const ScriptedError& error) {
            exception->scode = resultCode(0x800A0000u | static_cast<unsigned>(error.number));
            exception->bstrDescription = k_genutil::newBstr(error.description);
            exception->bstrSource = k_genutil::newBstr(error.source);
            return DISP_E_EXCEPTION;
        } catch (HRESULT refusal) {
            return refusal;
        }
    }
};

// A class factory that hands out one object.
class ScriptedFactory final : public Counted<IClassFactory, IID_IClassFactory> {
public:
    explicit ScriptedFactory(IDispatch* object) : object_(k_genutil::Ref<IDispatch>::share(object)) {}

    HRESULT CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return object_ ? object_->QueryInterface(iid, object) : E_FAIL;
    }
    HRESULT LockServer(BOOL) override { return S_OK; }

private:
    k_genutil::Ref<IDispatch> object_;
};

} // namespace genutil::fake
