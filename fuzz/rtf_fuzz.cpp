// Any bytes may stand in a rich-text file: what is read from them must be a rich text, and the same one again
// once it has been written.

#include "support/rich_text_rules.h"
#include "text/rtf.h"

#include <cstdint>
#include <cstdlib>

using namespace genutil::text;

namespace {

// Two bytes a character where the file says so, by a rule of its own.
class SomePages : public CodePages {
public:
    std::optional<Decoded> decode(const std::string& name, std::string_view bytes) const override {
        if (name != "CP932" && name != "CP936")
            return basicCodePages().decode(name, bytes);
        Decoded decoded{{}, true};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            auto value = static_cast<unsigned char>(bytes[i]);
            char32_t character = value;
            if (value >= 0x80 && i + 1 < bytes.size())
                character = char32_t(0x4E00) + value * 0x40u + static_cast<unsigned char>(bytes[++i]);
            if (character < 0x80)
                decoded.text += static_cast<char>(character);
            else
                decoded.text += {static_cast<char>(0xE0 | (character >> 12)),
                    static_cast<char>(0x80 | ((character >> 6) & 0x3F)),
                    static_cast<char>(0x80 | (character & 0x3F))};
        }
        return decoded;
    }
    std::optional<Encoded> encode(const std::string&, std::string_view) const override {
        return std::nullopt;
    }
    std::string guess(std::string_view) const override { return {}; }
    std::string systemCodePage() const override { return encodings::windows1252; }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const RichText text = readRtf(bytes, SomePages());
    if (!test::RichTextRules::broken(text).empty())
        std::abort();
    const std::string written = writeRtf(text);
    for (const char c : written)
        if (static_cast<unsigned char>(c) > 0x7E)
            std::abort();
    if (readRtf(written) != text)
        std::abort();
    if (plainText(text).find('\r') != std::string::npos)
        std::abort();
    return 0;
}
