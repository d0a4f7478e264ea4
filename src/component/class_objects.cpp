#include "component/class_objects.h"

#include <k_genutil/exports.h>

#include <algorithm>
#include <new>
#include <vector>

namespace genutil {
namespace {

struct Registration {
    CLSID clsid;
    DWORD cookie;
    k_genutil::Ref<IUnknown> factory;
};

// Hosts that never revoke leave their factories here; those are not touched when the process ends, because
// the host's code may be gone by then.
std::vector<Registration>& registrations() {
    static auto& list = *new std::vector<Registration>();
    return list;
}

} // namespace

HRESULT registerClassObject(
    REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags, DWORD* cookie) noexcept {
    constexpr DWORD inProcessServer = 1;
    constexpr DWORD multipleUse = 1;
    if (!cookie)
        return E_POINTER;
    *cookie = 0;
    if (!factory || !(context & inProcessServer) || flags != multipleUse)
        return E_INVALIDARG;
    if (findClassObject(clsid))
        return k_genutil::CO_E_OBJISREG;
    try {
        static DWORD last = 0;
        registrations().push_back({clsid, last + 1, k_genutil::Ref<IUnknown>::share(factory)});
        *cookie = ++last;
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT revokeClassObject(DWORD cookie) noexcept {
    auto& list = registrations();
    const auto found = std::ranges::find(list, cookie, &Registration::cookie);
    if (found == list.end())
        return E_INVALIDARG;
    const Registration revoked = std::move(*found); // its release may come back here
    list.erase(found);
    return S_OK;
}

k_genutil::Ref<IUnknown> findClassObject(const CLSID& clsid) {
    const auto& list = registrations();
    const auto found = std::ranges::find(list, clsid, &Registration::clsid);
    return found == list.end() ? k_genutil::Ref<IUnknown>() : found->factory;
}

} // namespace genutil
