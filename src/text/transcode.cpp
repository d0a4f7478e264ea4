#include "text/transcode.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace genutil::text {

namespace {

// Windows-1252 differs from Latin-1 in these 32 places.
constexpr char32_t windows1252From80[] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D,
    0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::string fromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    while (!bytes.empty()) {
        const std::size_t ascii = asciiPrefix(bytes);
        out += bytes.substr(0, ascii);
        if (ascii == bytes.size())
            break;
        const auto value = static_cast<unsigned char>(bytes[ascii]);
        appendUtf8(out, value < 0xA0 ? windows1252From80[value - 0x80] : value);
        bytes.remove_prefix(ascii + 1);
    }
    return out;
}

std::optional<char> windows1252Byte(char32_t codePoint) {
    if (codePoint < 0x80 || (codePoint >= 0xA0 && codePoint <= 0xFF))
        return static_cast<char>(codePoint);
    const auto* found = std::ranges::find(windows1252From80, codePoint);
    if (found == std::end(windows1252From80))
        return std::nullopt;
    return static_cast<char>(0x80 + (found - windows1252From80));
}

// Encodes the runs of ASCII with appendAscii(run), all else with append(character, its bytes), which tells
// whether it could. Both append to the bytes of `encoded`.
template<typename AppendAscii, typename Append>
void encodeEach(std::string_view text, CodePages::Encoded& encoded, AppendAscii appendAscii, Append append) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t ascii = asciiPrefix(text.substr(at));
        appendAscii(text.substr(at, ascii));
        at += ascii;
        const DecodedCharacter character = decodeUtf8(text, at);
        if (character.length > 0 && !append(character, text.substr(at, character.length))) {
            encoded.refusedAt = at;
            return;
        }
        at += character.length;
    }
}

CodePages::Encoded toWindows1252(std::string_view text) {
    CodePages::Encoded encoded;
    encoded.bytes.reserve(text.size());
    encodeEach(
        text, encoded, [&](std::string_view ascii) { encoded.bytes += ascii; },
        [&](const DecodedCharacter& character, std::string_view) {
            const auto byte = character.valid ? windows1252Byte(character.codePoint) : std::nullopt;
            if (byte)
                encoded.bytes.push_back(*byte);
            return byte.has_value();
        });
    return encoded;
}

CodePages::Encoded toUtf16(std::string_view text, ByteOrder order) {
    CodePages::Encoded encoded;
    encoded.bytes.reserve(2 * text.size());
    const auto append = [&](char32_t unit) { appendUtf16Bytes(encoded.bytes, unit, order); };
    const auto appendAscii = [&](std::string_view ascii) {
        std::size_t low = encoded.bytes.size() + (order == ByteOrder::LittleEndian ? 0 : 1);
        encoded.bytes.resize(encoded.bytes.size() + 2 * ascii.size());
        for (const char character : ascii) {
            encoded.bytes[low] = character;
            low += 2;
        }
    };
    encodeEach(text, encoded, appendAscii, [&](const DecodedCharacter& character, std::string_view bytes) {
        const char32_t unit = character.valid ? character.codePoint : surrogateAt(bytes, 0);
        if (unit != 0)
            append(unit);
        return unit != 0;
    });
    return encoded;
}

CodePages::Encoded toUtf32(std::string_view text, ByteOrder order) {
    CodePages::Encoded encoded;
    encoded.bytes.reserve(4 * text.size());
    encodeEach(
        text, encoded,
        [&](std::string_view ascii) {
            for (const char character : ascii)
                appendUtf32Bytes(encoded.bytes, static_cast<unsigned char>(character), order);
        },
        [&](const DecodedCharacter& character, std::string_view) {
            if (character.valid)
                appendUtf32Bytes(encoded.bytes, character.codePoint, order);
            return character.valid;
        });
    return encoded;
}

std::optional<ByteOrder> utf32Order(std::string_view name) {
    if (equalsIgnoringCase(name, encodings::utf32LittleEndian))
        return ByteOrder::LittleEndian;
    if (equalsIgnoringCase(name, encodings::utf32BigEndian))
        return ByteOrder::BigEndian;
    return std::nullopt;
}

std::optional<ByteOrder> utf16Order(std::string_view name) {
    if (equalsIgnoringCase(name, encodings::utf16LittleEndian))
        return ByteOrder::LittleEndian;
    if (equalsIgnoringCase(name, encodings::utf16BigEndian))
        return ByteOrder::BigEndian;
    return std::nullopt;
}

class BasicCodePages : public CodePages {
public:
    std::optional<Decoded> decode(const std::string& name, std::string_view bytes) const override {
        if (!equalsIgnoringCase(name, encodings::windows1252))
            return std::nullopt;
        return Decoded{fromWindows1252(bytes), true};
    }
    std::optional<Encoded> encode(const std::string& name, std::string_view text) const override {
        if (!equalsIgnoringCase(name, encodings::windows1252))
            return std::nullopt;
        return toWindows1252(text);
    }
    std::string guess(std::string_view) const override { return {}; }
    std::string systemCodePage() const override { return encodings::windows1252; }
};

} // namespace

const CodePages& basicCodePages() {
    static const BasicCodePages pages;
    return pages;
}

const char* ownEncoding(std::string_view name) {
    static constexpr std::array own{encodings::utf8, encodings::utf16LittleEndian, encodings::utf16BigEndian,
        encodings::utf32LittleEndian, encodings::utf32BigEndian, encodings::windows1252};
    const auto* found =
        std::ranges::find_if(own, [&](const char* known) { return equalsIgnoringCase(known, name); });
    return found == own.end() ? nullptr : *found;
}

std::optional<DecodedText> decodeText(
    const std::string& name, std::string_view bytes, const CodePages& pages) {
    if (const auto order = utf16Order(name))
        return DecodedText{
            fromUtf16Bytes(bytes, *order), true, std::string(bytes.substr(bytes.size() / 2 * 2))};
    if (const auto order = utf32Order(name)) {
        DecodedText decoded{{}, true, std::string(bytes.substr(bytes.size() / 4 * 4))};
        decoded.text = fromUtf32Bytes(bytes, *order, decoded.exact);
        return decoded;
    }
    const bool own = equalsIgnoringCase(name, encodings::windows1252);
    auto decoded = (own ? basicCodePages() : pages).decode(name, bytes);
    if (!decoded)
        return std::nullopt;
    return DecodedText{std::move(decoded->text), decoded->exact, {}};
}

CodePages::Encoded encodeText(const std::string& name, std::string_view text, const CodePages& pages) {
    if (const auto order = utf16Order(name))
        return toUtf16(text, *order);
    if (const auto order = utf32Order(name))
        return toUtf32(text, *order);
    const bool own = equalsIgnoringCase(name, encodings::windows1252);
    auto encoded = (own ? basicCodePages() : pages).encode(name, text);
    if (!encoded)
        refuseEncoding(name);
    return std::move(*encoded);
}

std::string_view byteOrderMark(std::string_view name) {
    if (equalsIgnoringCase(name, encodings::utf8))
        return "\xEF\xBB\xBF";
    if (const auto order = utf16Order(name))
        return *order == ByteOrder::LittleEndian ? "\xFF\xFE" : "\xFE\xFF";
    if (const auto order = utf32Order(name))
        return *order == ByteOrder::LittleEndian ? std::string_view("\xFF\xFE\0\0", 4)
                                                 : std::string_view("\0\0\xFE\xFF", 4);
    return "";
}

void refuseEncoding(const std::string& name) {
    throw std::invalid_argument(
        "\"" + name + "\" is no character encoding that texts can be read or written in");
}

} // namespace genutil::text
