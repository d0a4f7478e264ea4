#pragma once

#include <k_genutil/support.h>

namespace genutil {

// The class factories that hosts register in the process; see k_genutil/exports.h for results.
HRESULT registerClassObject(
    REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags, DWORD* cookie) noexcept;
HRESULT revokeClassObject(DWORD cookie) noexcept;

// The registered factory of a class; none if there is none.
k_genutil::Ref<IUnknown> findClassObject(const CLSID& clsid);

} // namespace genutil
