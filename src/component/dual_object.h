#pragma once

#include "component/com_object.h"
#include "component/dispatch_tables.h"
#include "component/error_info.h"

namespace genutil {

// An object of a dual interface: late binding through the interface's table, and error information for every
// member.
template<class Interface>
class DualObject : public DispatchObject<Interface> {
public:
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(
        REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return findNames(tables::dispatchTable<Interface>, reserved, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* params,
        VARIANT* result, EXCEPINFO* exception, UINT* argument) override {
        const auto self =
            k_genutil::Ref<IUnknown>::share(this); // the caller may let go of it while a window is open
        return invokeMember(tables::dispatchTable<Interface>, *this, id, reserved, flags, params, result,
            exception, argument);
    }

protected:
    void* find(REFIID iid) override {
        if (iid == IID_IDispatch || iid == k_genutil::iidOf<Interface>)
            return static_cast<Interface*>(this);
        if (iid == IID_ISupportErrorInfo)
            return static_cast<ISupportErrorInfo*>(&support_);
        return DispatchObject<Interface>::find(iid);
    }
    // Whether the members of this interface leave error information.
    virtual bool tellsErrorsOf(REFIID iid) const { return iid == k_genutil::iidOf<Interface>; }

private:
    // Shares the identity and the life of the object around it.
    struct ErrorSupport final : ISupportErrorInfo {
        explicit ErrorSupport(DualObject& owner) : owner_(owner) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
            return owner_.QueryInterface(iid, object);
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return owner_.AddRef(); }
        ULONG STDMETHODCALLTYPE Release() override { return owner_.Release(); }
        HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
            return owner_.tellsErrorsOf(iid) ? S_OK : S_FALSE;
        }
        DualObject& owner_;
    };

    ErrorSupport support_{*this};
};

} // namespace genutil
