#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace genutil::text {

// Names of the encodings that this floor reads and writes by itself. All others are a CodePages' business.
namespace encodings {
inline constexpr const char* utf8 = "UTF-8";
inline constexpr const char* utf16LittleEndian = "UTF-16LE";
inline constexpr const char* utf16BigEndian = "UTF-16BE";
inline constexpr const char* utf32LittleEndian = "UTF-32LE";
inline constexpr const char* utf32BigEndian = "UTF-32BE";
inline constexpr const char* windows1252 = "windows-1252";
} // namespace encodings

// How the bytes of a file stand for characters.
struct Encoding {
    std::string name =
        encodings::utf8; // as registered for use on the Internet; compared without regard to case
    bool mark = false;   // a byte-order mark leads the file
    friend bool operator==(const Encoding&, const Encoding&) = default;
};

// Character sets beyond those above: single-byte and double-byte code pages.
class CodePages {
public:
    virtual ~CodePages() = default;

    struct Decoded {
        std::string text; // UTF-8; bytes that are no character are U+FFFD
        bool exact;       // encoding the text again gives the same bytes
    };
    // Nothing for a character set that is not known.
    virtual std::optional<Decoded> decode(const std::string& name, std::string_view bytes) const = 0;

    struct Encoded {
        std::string bytes; // up to the refused character
        std::optional<std::size_t>
            refusedAt; // the first character, by its byte in `text`, that the set lacks
    };
    virtual std::optional<Encoded> encode(const std::string& name, std::string_view text) const = 0;

    // The character set that the bytes look like; "" for none. A hint: on short texts it is often wrong.
    virtual std::string guess(std::string_view bytes) const = 0;
    // The character set of texts that say nothing about theirs.
    virtual std::string systemCodePage() const = 0;
};

// Knows windows-1252 alone, which is also its system code page (its five unused bytes are the control
// characters of the same value, so every byte string is a text), and guesses nothing.
const CodePages& basicCodePages();

} // namespace genutil::text
