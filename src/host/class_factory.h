#pragma once

#include "host/automation_object.h"

#include <functional>

namespace kestal {

/// The factory of one of the host's classes. Born with one reference.
class ClassFactory : public IClassFactory {
public:
    explicit ClassFactory(std::function<Ref<IDispatch>()> create) : create_(std::move(create)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory)
            return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IClassFactory*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        try {
            return create_()->QueryInterface(iid, object);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }
    // The host never unloads, so there is nothing to lock.
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    virtual ~ClassFactory() = default;

    std::function<Ref<IDispatch>()> create_;
    std::atomic<ULONG> references_{1};
};

} // namespace kestal
