#include "platform/system/code_pages.h"

#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <memory>
#include <type_traits>

#include <iconv.h>
#include <langinfo.h>
#include <uchardet/uchardet.h>

namespace genutil {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD"; // U+FFFD

// One conversion of the system's.
class Converter {
public:
    Converter(const std::string& to, const std::string& from)
        : handle_(::iconv_open(to.c_str(), from.c_str())) {}
    ~Converter() {
        if (isKnown())
            ::iconv_close(handle_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    bool isKnown() const { return handle_ != iconv_t(-1); }

    // Appends what the text becomes and drops its converted front; false where the rest is refused.
    bool convert(std::string_view& text, std::string& out) {
        auto* front = const_cast<char*>(text.data()); // the system's face lacks the const, and only reads
        std::size_t left = text.size();
        const bool all = run(&front, &left, out);
        text.remove_prefix(text.size() - left);
        // What the converter kept back to see what follows, and its return to the initial state.
        return all && run(nullptr, nullptr, out);
    }

private:
    bool run(char** front, std::size_t* left, std::string& out) {
        std::array<char, 1 << 15> buffer;
        for (;;) {
            char* end = buffer.data();
            std::size_t room = buffer.size();
            const std::size_t result = ::iconv(handle_, front, left, &end, &room);
            const int reason = errno;
            out.append(buffer.data(), std::size_t(end - buffer.data()));
            if (result != std::size_t(-1))
                return true;
            if (reason != E2BIG || end == buffer.data())
                return false;
        }
    }

    iconv_t handle_;
};

bool isName(std::string_view name) {
    constexpr std::string_view others = "_.:-+()";
    return !name.empty() && std::ranges::all_of(name, [&](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               others.find(c) != std::string_view::npos;
    });
}

bool isWindows1252(const std::string& name) {
    return text::equalsIgnoringCase(name, text::encodings::windows1252);
}

std::string decodeBytes(Converter& converter, std::string_view bytes, bool& exact) {
    std::string text;
    while (!converter.convert(bytes, text)) {
        exact = false;
        text += replacement;
        if (bytes.empty())
            break;
        bytes.remove_prefix(1);
    }
    return text;
}

// The first character, by its byte, that is not the same in both.
std::size_t firstDifference(std::string_view text, std::string_view other) {
    const auto found = std::ranges::mismatch(text, other);
    auto at = std::size_t(found.in1 - text.begin());
    while (at > 0 && (at == text.size() || (static_cast<unsigned char>(text[at]) & 0xC0u) == 0x80u))
        --at;
    return at;
}

} // namespace

std::optional<text::CodePages::Decoded> SystemCodePages::decode(
    const std::string& name, std::string_view bytes) const {
    if (isWindows1252(name))
        return text::basicCodePages().decode(name, bytes);
    if (!isName(name))
        return std::nullopt;
    Converter there(text::encodings::utf8, name);
    Converter back(name, text::encodings::utf8);
    if (!there.isKnown() || !back.isKnown())
        return std::nullopt;
    Decoded decoded{{}, true};
    decoded.text = decodeBytes(there, bytes, decoded.exact);
    if (decoded.exact) {
        std::string again;
        std::string_view text = decoded.text;
        decoded.exact = back.convert(text, again) && again == bytes;
    }
    return decoded;
}

std::optional<text::CodePages::Encoded> SystemCodePages::encode(
    const std::string& name, std::string_view text) const {
    if (isWindows1252(name))
        return text::basicCodePages().encode(name, text);
    if (!isName(name))
        return std::nullopt;
    Converter there(name, text::encodings::utf8);
    Converter back(text::encodings::utf8, name);
    if (!there.isKnown() || !back.isKnown())
        return std::nullopt;
    Encoded encoded;
    std::string_view rest = text;
    if (!there.convert(rest, encoded.bytes))
        encoded.refusedAt = text.size() - rest.size();

    // Some converters silently drop or merge characters.
    bool exact = true;
    const std::string again = decodeBytes(back, encoded.bytes, exact);
    const std::string_view accepted = text.substr(0, encoded.refusedAt.value_or(text.size()));
    if (again == accepted)
        return encoded;
    const std::size_t refused = firstDifference(accepted, again);
    encoded = Encoded{{}, refused};
    rest = text.substr(0, refused);
    Converter(name, text::encodings::utf8).convert(rest, encoded.bytes);
    return encoded;
}

std::string SystemCodePages::guess(std::string_view bytes) const {
    constexpr std::size_t looked = 1 << 18;
    constexpr std::array notSaved{"ISO-2022", "HZ", "UTF-7", "UTF-16", "UTF-32", "X-", "ASCII"};
    const std::unique_ptr<std::remove_pointer_t<uchardet_t>, decltype(&::uchardet_delete)> detector(
        ::uchardet_new(), &::uchardet_delete);
    bytes = bytes.substr(0, looked);
    if (::uchardet_handle_data(detector.get(), bytes.data(), bytes.size()) != 0)
        return {};
    ::uchardet_data_end(detector.get());
    const std::string name = ::uchardet_get_charset(detector.get());
    if (isWindows1252(name))
        return text::encodings::windows1252;
    const bool excluded =
        std::ranges::any_of(notSaved, [&](const char* front) { return name.starts_with(front); });
    return !excluded && isName(name) && Converter(name, text::encodings::utf8).isKnown() ? name : "";
}

std::string SystemCodePages::systemCodePage() const {
    const locale_t user = ::newlocale(LC_CTYPE_MASK, "", locale_t(0));
    if (user == locale_t(0))
        return text::encodings::windows1252;
    const std::string name = ::nl_langinfo_l(CODESET, user);
    ::freelocale(user);
    const bool saysNothing = name == "UTF-8" || name == "ANSI_X3.4-1968" || name == "US-ASCII";
    const bool known = isName(name) && Converter(name, text::encodings::utf8).isKnown();
    return saysNothing || !known ? text::encodings::windows1252 : name;
}

} // namespace genutil
