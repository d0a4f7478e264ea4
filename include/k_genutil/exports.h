#pragma once

// The functions that the component's library exports, by these names and with C linkage. A host that loads
// the library itself looks them up by name and casts to the types here; k_genutil::Server (activation.h) does
// so.
//
// All of them, like every member of the component's objects, belong to the host's user-interface thread.

#include "k_genutil/automation.h"

namespace k_genutil {

/// "DllGetClassObject": hands out the class factory of a class. CLASS_E_CLASSNOTAVAILABLE for a class
/// identifier that is not the component's, E_NOINTERFACE for an interface that factories do not have.
using DllGetClassObjectFunction = HRESULT(STDMETHODCALLTYPE*)(REFCLSID clsid, REFIID iid, void** factory);
/// "DllCanUnloadNow": S_OK when no object of the component is alive and no factory is locked, else S_FALSE.
using DllCanUnloadNowFunction = HRESULT(STDMETHODCALLTYPE*)();
/// "DllRegisterServer" and "DllUnregisterServer": write and remove the entries of the classes, their
/// programmatic identifiers and the type library; the entries of others stay as they are. SELFREG_E_CLASS
/// when the registry file cannot be read or written; GetErrorInfo gives the reason.
using DllRegisterServerFunction = HRESULT(STDMETHODCALLTYPE*)();
using DllUnregisterServerFunction = HRESULT(STDMETHODCALLTYPE*)();

#if !defined(_WIN32)

// Services that the system provides on Windows.

/// "GetErrorInfo": the error information that the last failing call on this thread left, which is thereby
/// taken (the caller releases it): its source is the qualified procedure name. S_FALSE and null when there is
/// none. `reserved` must be 0.
using GetErrorInfoFunction = HRESULT (*)(ULONG reserved, IErrorInfo** information);
/// "CoRegisterClassObject": makes a host's class factory available to the component under a class identifier
/// (k_genutil::host_classes). `context` is 1 (in-process server) and `flags` 1 (multiple use). The factory is
/// held until it is revoked by the cookie. E_INVALIDARG for a null factory, CO_E_OBJISREG for a class that is
/// registered already.
using CoRegisterClassObjectFunction = HRESULT (*)(
    REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags, DWORD* cookie);
/// "CoRevokeClassObject": E_INVALIDARG for a cookie that is not registered. The component keeps services that
/// it has already created; it asks the factory for none after this.
using CoRevokeClassObjectFunction = HRESULT (*)(DWORD cookie);

inline constexpr HRESULT CO_E_OBJISREG = resultCode(0x800401FC);

#endif

} // namespace k_genutil
