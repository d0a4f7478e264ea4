// The functions that the library exports; k_genutil/exports.h says what each answers.

#include "component/class_list.h"
#include "component/class_objects.h"
#include "component/com_object.h"
#include "component/composition.h"
#include "component/error_info.h"
#include "component/registration.h"
#include "hostif/form.h"

#include <k_genutil/exports.h>

#include <climits>
#include <cstdlib>

#include <dlfcn.h>

namespace genutil {
namespace {

// Made when the first object is. It stays to the end of the process: the windows and the host's services in
// it may not be taken down after the code that they stand on.
Component& theComponent() {
    static auto* const composition = new Composition();
    return composition->component();
}

std::string ownLibrary() {
    Dl_info info{};
    char path[PATH_MAX];
    if (!::dladdr(reinterpret_cast<const void*>(&theComponent), &info) || !::realpath(info.dli_fname, path))
        throw Error(errors::PathNotFound, "The path of the component's own library cannot be found");
    return path;
}

} // namespace
} // namespace genutil

#define GENUTIL_EXPORT extern "C" __attribute__((visibility("default")))

GENUTIL_EXPORT HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    const genutil::PublicClass* const found = genutil::findPublicClass(clsid);
    if (!found)
        return CLASS_E_CLASSNOTAVAILABLE;
    k_genutil::Ref<IClassFactory> factory;
    const HRESULT made = genutil::guarded([&] {
        factory = genutil::makeClassFactory([found] { return found->create(genutil::theComponent()); });
    });
    return FAILED(made) ? made : factory->QueryInterface(iid, object);
}

GENUTIL_EXPORT HRESULT DllCanUnloadNow() {
    return genutil::LiveCount::isIdle() && genutil::Form::aliveCount() == 0 ? S_OK : S_FALSE;
}

GENUTIL_EXPORT HRESULT DllRegisterServer() {
    return FAILED(genutil::guarded([] { genutil::registerServer(genutil::ownLibrary()); })) ? SELFREG_E_CLASS
                                                                                            : S_OK;
}

GENUTIL_EXPORT HRESULT DllUnregisterServer() {
    return FAILED(genutil::guarded([] { genutil::unregisterServer(); })) ? SELFREG_E_CLASS : S_OK;
}

GENUTIL_EXPORT HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** information) {
    return genutil::takeErrorInfo(reserved, information);
}

GENUTIL_EXPORT HRESULT CoRegisterClassObject(
    REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags, DWORD* cookie) {
    return genutil::registerClassObject(clsid, factory, context, flags, cookie);
}

GENUTIL_EXPORT HRESULT CoRevokeClassObject(DWORD cookie) {
    return genutil::revokeClassObject(cookie);
}
