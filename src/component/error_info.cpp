#include "component/error_info.h"

#include "component/com_object.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <utility>

namespace genutil {
namespace {

constexpr std::uint32_t controlFacility = 0x800A0000;

// The source of an error that no procedure has put its name to.
constexpr const char* componentName = "k_genutil";

// Kept as plain data, so that a pending error does not hold the library in the process.
thread_local std::optional<Error> pending;

class ErrorInformation final : public ComObject<IErrorInfo> {
public:
    explicit ErrorInformation(Error error) : error_(std::move(error)) {}

    HRESULT STDMETHODCALLTYPE GetGUID(GUID* interfaceId) override {
        if (!interfaceId)
            return E_POINTER;
        *interfaceId = GUID_NULL;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) override { return hand(error_.source(), source); }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override { return hand(error_.description(), text); }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* file) override { return hand({}, file); }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) override {
        if (!context)
            return E_POINTER;
        *context = 0;
        return S_OK;
    }

private:
    void* find(REFIID iid) override {
        return iid == IID_IErrorInfo ? static_cast<IErrorInfo*>(this) : ComObject::find(iid);
    }
    static HRESULT hand(const std::string& text, BSTR* to) {
        if (!to)
            return E_POINTER;
        try {
            *to = k_genutil::newBstr(text);
            return S_OK;
        } catch (const std::bad_alloc&) {
            *to = nullptr;
            return E_OUTOFMEMORY;
        }
    }

    Error error_;
};

} // namespace

HRESULT resultOf(int number) {
    if (number < 0)
        return number;
    const bool fits = number > 0 && number <= 0xFFFF;
    return static_cast<HRESULT>(
        controlFacility | static_cast<std::uint32_t>(fits ? number : errors::InternalError));
}

int numberOf(HRESULT result) {
    const auto bits = static_cast<std::uint32_t>(result);
    if ((bits & 0xFFFF0000) == controlFacility)
        return static_cast<int>(bits & 0xFFFF);
    struct Mapping {
        HRESULT result;
        int number;
    };
    static constexpr std::array mappings{
        Mapping{DISP_E_MEMBERNOTFOUND, errors::NoSuchMember},
        Mapping{DISP_E_UNKNOWNNAME, errors::NoSuchMember},
        Mapping{DISP_E_TYPEMISMATCH, errors::TypeMismatch},
        Mapping{DISP_E_BADVARTYPE, errors::TypeMismatch},
        Mapping{E_NOINTERFACE, errors::TypeMismatch},
        Mapping{DISP_E_OVERFLOW, errors::Overflow},
        Mapping{E_INVALIDARG, errors::InvalidCall},
        Mapping{E_OUTOFMEMORY, errors::OutOfMemory},
        Mapping{E_ACCESSDENIED, errors::PermissionDenied},
    };
    const auto found = std::ranges::find(mappings, result, &Mapping::result);
    return found == mappings.end() ? errors::AutomationError : found->number;
}

void clearErrorInfo() noexcept {
    pending.reset();
}

HRESULT reportException(const std::exception_ptr& exception) noexcept {
    try {
        const Error error = toError(exception);
        pending = error.source().empty() ? Error(error.number(), error.description(), componentName) : error;
        return resultOf(pending->number());
    } catch (...) {
        pending.reset();
        return E_OUTOFMEMORY;
    }
}

HRESULT fillException(HRESULT result, EXCEPINFO* exception) noexcept {
    const std::optional<Error> error = std::exchange(pending, std::nullopt);
    if (!exception)
        return DISP_E_EXCEPTION;
    *exception = EXCEPINFO{};
    exception->scode = result;
    try {
        exception->bstrSource = k_genutil::newBstr(error ? error->source() : std::string(componentName));
        exception->bstrDescription =
            k_genutil::newBstr(error ? error->description() : standardDescription(numberOf(result)));
    } catch (const std::bad_alloc&) {
        // The number alone still reaches the caller.
    }
    return DISP_E_EXCEPTION;
}

HRESULT takeErrorInfo(ULONG reserved, IErrorInfo** information) noexcept {
    if (!information)
        return E_POINTER;
    *information = nullptr;
    if (reserved != 0)
        return E_INVALIDARG;
    if (!pending)
        return S_FALSE;
    *information = new (std::nothrow) ErrorInformation(std::move(*pending));
    pending.reset();
    return *information ? S_OK : E_OUTOFMEMORY;
}

} // namespace genutil
