#include "component/com_object.h"

#include "component/error_info.h"

namespace genutil {
namespace {

class ClassFactory final : public ComObject<IClassFactory> {
public:
    explicit ClassFactory(std::function<k_genutil::Ref<IUnknown>()> create) : create_(std::move(create)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        k_genutil::Ref<IUnknown> fresh;
        const HRESULT result = guarded([&] { fresh = create_(); });
        return FAILED(result) ? result : fresh->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        LiveCount::lock(lock != 0);
        return S_OK;
    }

private:
    void* find(REFIID iid) override {
        return iid == IID_IClassFactory ? static_cast<IClassFactory*>(this) : ComObject::find(iid);
    }

    std::function<k_genutil::Ref<IUnknown>()> create_;
};

} // namespace

k_genutil::Ref<IClassFactory> makeClassFactory(std::function<k_genutil::Ref<IUnknown>()> create) {
    return k_genutil::Ref<IClassFactory>::adopt(new ClassFactory(std::move(create)));
}

} // namespace genutil
