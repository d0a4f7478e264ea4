#pragma once

// The automation binary interface that the component and its hosts meet on.
//
// On Windows these are the system's own headers. Elsewhere this file declares the part of the published
// interface that is used here: the layouts, interface identifiers, type codes and result codes below have the
// published values, so a table of functions laid out by one module is understood by every other. Interfaces
// have no virtual destructor and list their functions in slot order.
//
// Strings (BSTR) and variants are handed over between modules. Both are built on the C allocator of the
// process alone, through the inline functions at the end, so that any module may free what another has made.

#if defined(_WIN32)

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>
#include <oleauto.h>

#else

#include <cstdint>
#include <cstdlib>
#include <cstring>

#define STDMETHODCALLTYPE

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using BOOL = std::int32_t;
using HRESULT = std::int32_t;
using SCODE = std::int32_t;
using LCID = std::uint32_t;
using DISPID = std::int32_t;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using OLECHAR = char16_t;
using LPOLESTR = OLECHAR*;
/// Text of 16-bit units ended by a zero unit; its length in bytes stands in the four bytes before the first
/// unit. Null means the empty text.
using BSTR = OLECHAR*;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];

    friend bool operator==(const GUID&, const GUID&) = default;
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline constexpr GUID GUID_NULL{};
inline constexpr IID IID_IUnknown{0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IClassFactory{0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IDispatch{0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IErrorInfo{
    0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ISupportErrorInfo{
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};

/// The result code with the given 32 bits.
constexpr HRESULT resultCode(std::uint32_t bits) {
    return static_cast<HRESULT>(bits);
}
constexpr bool SUCCEEDED(HRESULT result) {
    return result >= 0;
}
constexpr bool FAILED(HRESULT result) {
    return result < 0;
}

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = resultCode(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = resultCode(0x80004002);
inline constexpr HRESULT E_POINTER = resultCode(0x80004003);
inline constexpr HRESULT E_FAIL = resultCode(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = resultCode(0x8000FFFF);
inline constexpr HRESULT E_ACCESSDENIED = resultCode(0x80070005);
inline constexpr HRESULT E_OUTOFMEMORY = resultCode(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = resultCode(0x80070057);
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = resultCode(0x80020001);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = resultCode(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = resultCode(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = resultCode(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = resultCode(0x80020006);
inline constexpr HRESULT DISP_E_NONAMEDARGS = resultCode(0x80020007);
inline constexpr HRESULT DISP_E_BADVARTYPE = resultCode(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = resultCode(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = resultCode(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = resultCode(0x8002000B);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = resultCode(0x8002000E);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = resultCode(0x8002000F);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = resultCode(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = resultCode(0x80040111);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = resultCode(0x80040154);
inline constexpr HRESULT CO_E_CLASSSTRING = resultCode(0x800401F3);
inline constexpr HRESULT CO_E_OBJNOTREG = resultCode(0x800401FB);
inline constexpr HRESULT CO_E_DLLNOTFOUND = resultCode(0x800401F8);
inline constexpr HRESULT CO_E_ERRORINDLL = resultCode(0x800401F9);
inline constexpr HRESULT SELFREG_E_CLASS = resultCode(0x80040201);

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_UI1 = 17,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_TYPEMASK = 0x0FFF,
};

struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

protected:
    ~IUnknown() = default;
};

struct IDispatch;
struct ITypeInfo;

struct VARIANT {
    struct Record {
        void* data;
        void* info;
    };

    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        BYTE bVal;
        std::int16_t iVal;
        LONG lVal;
        std::int64_t llVal;
        float fltVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        double date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        BYTE* pbVal;
        std::int16_t* piVal;
        LONG* plVal;
        float* pfltVal;
        double* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        double* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        VARIANT* pvarVal;
        void* byref;
        Record record;
    };
};
using VARIANTARG = VARIANT;
static_assert(sizeof(VARIANT) == (sizeof(void*) == 8 ? 24 : 16));

struct DISPPARAMS {
    VARIANTARG* rgvarg; ///< the arguments, last one first
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs; ///< named arguments stand before the positional ones in rgvarg
};

struct EXCEPINFO {
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    void* pvReserved;
    HRESULT(STDMETHODCALLTYPE* pfnDeferredFillIn)(EXCEPINFO*);
    SCODE scode;
};

inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;
inline constexpr DISPID DISPID_NEWENUM = -4;
inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 8;

struct IDispatch : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(
        REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
        DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argument) = 0;

protected:
    ~IDispatch() = default;
};

struct IClassFactory : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;

protected:
    ~IClassFactory() = default;
};

struct IErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetGUID(GUID* interfaceId) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* file) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) = 0;

protected:
    ~IErrorInfo() = default;
};

struct ISupportErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) = 0;

protected:
    ~ISupportErrorInfo() = default;
};

// A text's block starts eight bytes before its first unit, which keeps the units aligned; the byte length
// fills the second four of those bytes.
inline BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    constexpr std::uint32_t longest = (0xFFFFFFFFu - 16) / sizeof(OLECHAR);
    if (length > longest)
        return nullptr;
    const std::uint32_t bytes = length * static_cast<std::uint32_t>(sizeof(OLECHAR));
    auto* block = static_cast<unsigned char*>(std::calloc(1, 8 + std::size_t{bytes} + sizeof(OLECHAR)));
    if (!block)
        return nullptr;
    std::memcpy(block + 4, &bytes, sizeof bytes);
    if (text && bytes)
        std::memcpy(block + 8, text, bytes);
    return reinterpret_cast<BSTR>(block + 8);
}

inline BSTR SysAllocString(const OLECHAR* text) {
    if (!text)
        return nullptr;
    UINT length = 0;
    while (text[length])
        ++length;
    return SysAllocStringLen(text, length);
}

inline UINT SysStringByteLen(BSTR text) {
    std::uint32_t bytes = 0;
    if (text)
        std::memcpy(&bytes, reinterpret_cast<const unsigned char*>(text) - 4, sizeof bytes);
    return bytes;
}

inline UINT SysStringLen(BSTR text) {
    return SysStringByteLen(text) / static_cast<UINT>(sizeof(OLECHAR));
}

inline void SysFreeString(BSTR text) {
    if (text)
        std::free(reinterpret_cast<unsigned char*>(text) - 8);
}

inline void VariantInit(VARIANT* value) {
    std::memset(static_cast<void*>(value), 0, sizeof *value);
}

/// Frees the text or object that the value owns and leaves it empty. What a VT_BYREF value points to is not
/// owned. DISP_E_BADVARTYPE, with the value unchanged, for arrays.
inline HRESULT VariantClear(VARIANT* value) {
    if (value->vt & VT_ARRAY && !(value->vt & VT_BYREF))
        return DISP_E_BADVARTYPE;
    if (value->vt == VT_BSTR)
        SysFreeString(value->bstrVal);
    else if ((value->vt == VT_DISPATCH || value->vt == VT_UNKNOWN) && value->punkVal)
        value->punkVal->Release();
    VariantInit(value);
    return S_OK;
}

/// Makes `to` an independent copy of `from` (its own text, its own hold on an object; a reference is copied
/// as such).
inline HRESULT VariantCopy(VARIANT* to, const VARIANT* from) {
    if (to == from)
        return S_OK;
    if (from->vt & VT_ARRAY && !(from->vt & VT_BYREF))
        return DISP_E_BADVARTYPE;
    VARIANT copy = *from;
    if (from->vt == VT_BSTR && from->bstrVal) {
        copy.bstrVal = SysAllocStringLen(from->bstrVal, SysStringLen(from->bstrVal));
        if (!copy.bstrVal)
            return E_OUTOFMEMORY;
    } else if ((from->vt == VT_DISPATCH || from->vt == VT_UNKNOWN) && from->punkVal) {
        from->punkVal->AddRef();
    }
    const HRESULT cleared = VariantClear(to);
    if (FAILED(cleared)) {
        VariantClear(&copy);
        return cleared;
    }
    *to = copy;
    return S_OK;
}

#endif
