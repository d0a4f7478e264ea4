#pragma once

#include <k_genutil/support.h>

#include <atomic>
#include <functional>

namespace genutil {

// Counts what must keep the component's library in the process: its objects that are alive and locks on its
// factories.
class LiveCount {
public:
    LiveCount() { ++count_; }
    LiveCount(const LiveCount&) : LiveCount() {}
    LiveCount& operator=(const LiveCount&) = default;
    ~LiveCount() { --count_; }

    static bool isIdle() { return count_ == 0 && locks_ <= 0; }
    static void lock(bool lock) { lock ? ++locks_ : --locks_; }

private:
    static inline std::atomic<long> count_ = 0;
    static inline std::atomic<long> locks_ = 0;
};

// The identity and the life of an automation object: it starts with one reference, which its maker owns, and
// is deleted with the last.
template<class Interface>
class ComObject : public Interface {
public:
    ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = find(iid);
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            references_ = 1; // the destructor may hand the object out and take it back
            delete this;
        }
        return left;
    }

protected:
    virtual ~ComObject() = default;

    // The object as the interface, without a reference; null for an interface that it does not have.
    virtual void* find(REFIID iid) { return iid == IID_IUnknown ? static_cast<IUnknown*>(this) : nullptr; }

private:
    std::atomic<ULONG> references_ = 1;
    LiveCount alive_;
};

// An automation object without type information: k_genutil.idl describes the dual interfaces, and the members
// of all others are found by name.
template<class Interface>
class DispatchObject : public ComObject<Interface> {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count)
            return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        if (!info)
            return E_POINTER;
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
};

// A factory that creates objects of one class; `create` may throw.
k_genutil::Ref<IClassFactory> makeClassFactory(std::function<k_genutil::Ref<IUnknown>()> create);

} // namespace genutil
