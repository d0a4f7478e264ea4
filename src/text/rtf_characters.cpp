#include "text/rtf_characters.h"

#include "text/rtf_code_pages.h"
#include "text/utf8.h"

#include <optional>
#include <utility>

namespace genutil::text::rtf {

namespace {

constexpr char32_t lineSeparator = U'\u2028';
constexpr char32_t paragraphSeparator = U'\u2029';
constexpr char32_t objectMark = U'\uFFFC';

bool isControl(char32_t c) {
    return (c < 0x20 && c != U'\t') || (c >= 0x7F && c < 0xA0);
}

bool isNoCharacter(char32_t c) {
    return (c >= 0xFDD0 && c <= 0xFDEF) || (c & 0xFFFE) == 0xFFFE;
}

// Nothing where the character is left out.
std::optional<char32_t> cleanCharacter(char32_t c) {
    if (isControl(c) || c == objectMark)
        return std::nullopt;
    if (c == paragraphSeparator)
        return lineSeparator;
    return isNoCharacter(c) ? replacementCharacter : c;
}

} // namespace

std::string cleanText(std::string_view utf8) {
    std::string clean;
    clean.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const DecodedCharacter character = decodeUtf8(utf8, i);
        if (const auto kept = cleanCharacter(character.codePoint))
            appendUtf8(clean, *kept);
        i += character.length;
    }
    return clean;
}

void CharacterInput::bytes(std::string_view bytes, int codePage) {
    giveUpSurrogate();
    codePage_ = codePage;
    bytes_ += bytes;
    const LeadBytes leads = leadBytesOf(codePage);
    for (const char byte : bytes)
        leadOpen_ = !leadOpen_ && isLeadByte(leads, byte);
}

void CharacterInput::character(char32_t codePoint) {
    decode();
    giveUpSurrogate();
    appendUtf8(text_, codePoint);
}

void CharacterInput::unicode(int value, int codePage) {
    const auto unit = static_cast<char32_t>(value < 0 ? value + 0x10000 : value);
    if (unit >= 0xD800 && unit <= 0xDBFF) {
        decode();
        giveUpSurrogate();
        highSurrogate_ = unit;
    } else if (unit >= 0xDC00 && unit <= 0xDFFF && highSurrogate_ != 0) {
        appendUtf8(text_, 0x10000 + ((std::exchange(highSurrogate_, 0) - 0xD800) << 10) + (unit - 0xDC00));
    } else if (isOfSigns(codePage) && unit >= 0xF020 && unit <= 0xF0FF) {
        character(signCharacter(static_cast<unsigned char>(unit & 0xFF), codePage));
    } else {
        character(unit);
    }
}

void CharacterInput::giveUpSurrogate() {
    if (std::exchange(highSurrogate_, 0) != 0)
        appendUtf8(text_, replacementCharacter);
}

void CharacterInput::decode() {
    if (!bytes_.empty())
        text_ += decodeBytes(bytes_, codePage_, pages_);
    bytes_.clear();
    leadOpen_ = false;
}

std::string CharacterInput::take() {
    decode();
    giveUpSurrogate();
    std::string clean = cleanText(text_);
    text_.clear();
    return clean;
}

} // namespace genutil::text::rtf
