#include "platform/database/jet_text.h"

#include "text/encoding.h"
#include "text/utf8.h"

namespace genutil::jet {
namespace {

// Behind the mark, characters below 256 are one byte each; a zero byte switches to two bytes a character, and
// the next one back.
std::string expand(std::string_view bytes) {
    std::string units;
    bool isCompressed = true;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\0')
            isCompressed = !isCompressed;
        else if (isCompressed)
            units.append({bytes[i], '\0'});
        else if (i + 1 < bytes.size()) {
            units.append(bytes, i, 2);
            ++i;
        }
    }
    return units;
}

// Characters below 256, one byte each.
std::string fromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes)
        text::appendUtf8(text, static_cast<unsigned char>(c));
    return text;
}

} // namespace

std::string decodeText(std::string_view bytes, Version version) {
    if (version == Version::Jet3) {
        const auto decoded = text::basicCodePages().decode(text::encodings::windows1252, bytes);
        return decoded ? decoded->text : std::string();
    }
    constexpr std::string_view compressed = "\xFF\xFE";
    if (bytes.starts_with(compressed)) {
        bytes.remove_prefix(compressed.size());
        if (bytes.find('\0') == std::string_view::npos)
            return fromLatin1(bytes);
        return text::fromUtf16Bytes(expand(bytes), text::ByteOrder::LittleEndian);
    }
    return text::fromUtf16Bytes(bytes, text::ByteOrder::LittleEndian);
}

} // namespace genutil::jet
