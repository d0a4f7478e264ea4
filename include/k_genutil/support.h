#pragma once

// Owners of automation texts, objects and variants, for hosts and for the component. UTF-8 inside, UTF-16 in
// a BSTR.

#include "k_genutil/automation.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace k_genutil {

/// UTF-8 text as units of 16 bits; every byte that is not part of valid UTF-8 becomes U+FFFD.
inline std::u16string toUtf16(std::string_view text) {
    constexpr char32_t replacement = 0xFFFD;
    // Most texts are ASCII as a whole.
    const auto ascii =
        std::ranges::find_if(text, [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
    std::u16string units(text.begin(), ascii);
    units.reserve(text.size());
    for (std::size_t i = units.size(); i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        if (lead < 0x80) {
            units += static_cast<char16_t>(lead);
            continue;
        }
        const int more = lead >> 5 == 0x6 ? 1 : lead >> 4 == 0xE ? 2 : lead >> 3 == 0x1E ? 3 : 0;
        char32_t code = more == 0 ? replacement : lead & (0x3Fu >> more);
        std::size_t next = i;
        for (int k = 0; k < more; ++k, ++next) {
            const auto byte = next < text.size() ? static_cast<unsigned char>(text[next]) : 0u;
            if (byte >> 6 != 0x2) {
                code = 0x110000;
                break;
            }
            code = code << 6 | (byte & 0x3F);
        }
        constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
        if (code > 0x10FFFF || code >> 11 == 0x1B || code < smallest[more])
            code = replacement;
        else if (more > 0)
            i = next;
        if (code < 0x10000) {
            units += static_cast<char16_t>(code);
        } else {
            units += static_cast<char16_t>(0xD7C0 + (code >> 10));
            units += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        }
    }
    return units;
}

/// The UTF-8 of `length` units; a surrogate without its partner becomes U+FFFD.
inline std::string toUtf8(const OLECHAR* units, std::size_t length) {
    const auto ascii =
        std::find_if(units, units + length, [](OLECHAR unit) { return static_cast<char16_t>(unit) > 0x7F; });
    std::string text(static_cast<std::size_t>(ascii - units), '\0');
    std::transform(units, ascii, text.begin(), [](OLECHAR unit) { return static_cast<char>(unit); });
    text.reserve(length);
    for (std::size_t i = text.size(); i < length; ++i) {
        char32_t code = static_cast<char16_t>(units[i]);
        if (code >> 11 == 0x1B) {
            const char32_t next = i + 1 < length ? static_cast<char16_t>(units[i + 1]) : 0;
            if (code < 0xDC00 && next >> 10 == 0x37) {
                code = 0x10000 + ((code - 0xD800) << 10) + (next - 0xDC00);
                ++i;
            } else {
                code = 0xFFFD;
            }
        }
        if (code < 0x80) {
            text += static_cast<char>(code);
            continue;
        }
        const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        constexpr char32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
        text += static_cast<char>(leads[more] | code >> 6 * more);
        for (int k = more - 1; k >= 0; --k)
            text += static_cast<char>(0x80 | (code >> 6 * k & 0x3F));
    }
    return text;
}

inline std::string toUtf8(BSTR text) {
    return toUtf8(text, SysStringLen(text));
}

/// A new BSTR, which the caller frees. Throws std::bad_alloc.
inline BSTR newBstr(std::string_view text) {
    const std::u16string units = toUtf16(text);
    BSTR copy =
        SysAllocStringLen(reinterpret_cast<const OLECHAR*>(units.data()), static_cast<UINT>(units.size()));
    if (!copy)
        throw std::bad_alloc();
    return copy;
}

/// Owns a BSTR.
class Text {
public:
    Text() = default;
    explicit Text(std::string_view text) : text_(newBstr(text)) {}
    Text(Text&& other) noexcept : text_(other.release()) {}
    Text& operator=(Text&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Text() { SysFreeString(text_); }

    BSTR get() const { return text_; }
    /// For by-reference arguments: the callee may replace the text.
    BSTR* inOut() { return &text_; }
    BSTR release() { return std::exchange(text_, nullptr); }
    std::string utf8() const { return toUtf8(text_); }

private:
    BSTR text_ = nullptr;
};

/// Holds one reference to an automation object, or none.
template<class Interface>
class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    /// Takes over a reference that the caller owns.
    static Ref adopt(Interface* object) {
        Ref ref;
        ref.object_ = object;
        return ref;
    }
    /// Adds a reference of its own.
    static Ref share(Interface* object) {
        if (object)
            object->AddRef();
        return adopt(object);
    }
    Ref(const Ref& other) : Ref(share(other.object_)) {}
    Ref(Ref&& other) noexcept : object_(other.release()) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() {
        if (object_)
            object_->Release();
    }

    Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    Interface* release() { return std::exchange(object_, nullptr); }
    /// For by-reference arguments: the callee may replace the object.
    Interface** inOut() { return &object_; }
    /// For results: drops the present object first.
    void** out() {
        *this = Ref();
        return reinterpret_cast<void**>(&object_);
    }

private:
    Interface* object_ = nullptr;
};

/// Owns the text or object of a VARIANT.
class Variant : public VARIANT {
public:
    Variant() { VariantInit(this); }
    explicit Variant(std::string_view text) : Variant() {
        bstrVal = newBstr(text);
        vt = VT_BSTR;
    }
    explicit Variant(bool truth) : Variant() {
        vt = VT_BOOL;
        boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit Variant(std::int16_t number) : Variant() {
        vt = VT_I2;
        iVal = number;
    }
    explicit Variant(std::int32_t number) : Variant() {
        vt = VT_I4;
        lVal = number;
    }
    explicit Variant(double number) : Variant() {
        vt = VT_R8;
        dblVal = number;
    }
    /// Adds a reference of its own; null means Nothing.
    explicit Variant(IDispatch* object) : Variant() {
        vt = VT_DISPATCH;
        pdispVal = object;
        if (object)
            object->AddRef();
    }
    explicit Variant(const char* text) : Variant(std::string_view(text)) {}
    /// What stands for an optional argument that is omitted.
    static Variant missing() {
        Variant value;
        value.vt = VT_ERROR;
        value.scode = DISP_E_PARAMNOTFOUND;
        return value;
    }
    // The system declares the source as writable and only reads it.
    Variant(const Variant& other) : Variant() { VariantCopy(this, const_cast<Variant*>(&other)); }
    Variant(Variant&& other) noexcept : VARIANT(other) { VariantInit(&other); }
    Variant& operator=(Variant other) noexcept {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }
    ~Variant() { VariantClear(this); }
};

/// The variant in which a chain of references to variants ends; null for a reference to nothing and for a
/// ring.
inline const VARIANT* referredVariant(const VARIANT& variant) {
    constexpr int longestChain = 8;
    const VARIANT* v = &variant;
    for (int length = 0; v && v->vt == (VT_BYREF | VT_VARIANT); ++length)
        v = length < longestChain ? v->pvarVal : nullptr;
    return v;
}

/// What the variant holds, a reference to a value replaced by the value; texts and objects stay the owner's.
/// Nothing where a reference leads nowhere, to an array, or to a type that late-bound calls do not pass.
inline std::optional<VARIANT> plainValue(const VARIANT& variant) {
    const VARIANT* const source = referredVariant(variant);
    if (!source || (source->vt & VT_BYREF && (!source->byref || source->vt & VT_ARRAY)))
        return std::nullopt;
    if (!(source->vt & VT_BYREF))
        return *source;
    VARIANT plain;
    VariantInit(&plain);
    plain.vt = source->vt & VT_TYPEMASK;
    switch (plain.vt) {
    case VT_UI1:
        plain.bVal = *source->pbVal;
        break;
    case VT_I2:
        plain.iVal = *source->piVal;
        break;
    case VT_BOOL:
        plain.boolVal = *source->pboolVal;
        break;
    case VT_I4:
        plain.lVal = *source->plVal;
        break;
    case VT_ERROR:
        plain.scode = *source->pscode;
        break;
    case VT_R4:
        plain.fltVal = *source->pfltVal;
        break;
    case VT_R8:
        plain.dblVal = *source->pdblVal;
        break;
    case VT_DATE:
        plain.date = *source->pdate;
        break;
    case VT_BSTR:
        plain.bstrVal = *source->pbstrVal;
        break;
    case VT_DISPATCH:
        plain.pdispVal = *source->ppdispVal;
        break;
    case VT_UNKNOWN:
        plain.punkVal = *source->ppunkVal;
        break;
    default:
        return std::nullopt;
    }
    return plain;
}

/// What a failed late-bound call says of its failure.
struct FailureTexts {
    std::string source;
    std::string description;
};

/// Has a deferred description filled in, and takes the texts out of the exception information, which then
/// holds none.
inline FailureTexts takeTexts(EXCEPINFO& information) {
    if (information.pfnDeferredFillIn)
        information.pfnDeferredFillIn(&information);
    // Frees the three texts whatever happens next.
    Text source, description, helpFile;
    *source.inOut() = std::exchange(information.bstrSource, nullptr);
    *description.inOut() = std::exchange(information.bstrDescription, nullptr);
    *helpFile.inOut() = std::exchange(information.bstrHelpFile, nullptr);
    return {source.utf8(), description.utf8()};
}

/// Whether two names of members or registry entries are the same: letters compare without regard to case.
inline bool sameName(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

/// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in upper case.
inline std::string guidText(const GUID& guid) {
    char text[40];
    const auto* d = guid.Data4;
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
        static_cast<unsigned>(guid.Data1), unsigned{guid.Data2}, unsigned{guid.Data3}, d[0], d[1], d[2], d[3],
        d[4], d[5], d[6], d[7]);
    return text;
}

/// The inverse of guidText, in either case of the digits; nothing for any other text.
inline std::optional<GUID> parseGuid(std::string_view text) {
    constexpr std::string_view shape = "{00000000-0000-0000-0000-000000000000}";
    if (text.size() != shape.size())
        return std::nullopt;
    unsigned char bytes[16] = {};
    int digits = 0;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const char c = text[i];
        if (shape[i] != '0') {
            if (c != shape[i])
                return std::nullopt;
            continue;
        }
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : -1;
        if (digit < 0)
            return std::nullopt;
        bytes[digits / 2] = static_cast<unsigned char>(bytes[digits / 2] << 4 | digit);
        ++digits;
    }
    GUID guid{};
    guid.Data1 = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
                 static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
    guid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    for (int i = 0; i < 8; ++i)
        guid.Data4[i] = bytes[8 + i];
    return guid;
}

} // namespace k_genutil
