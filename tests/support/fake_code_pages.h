#pragma once

#include "text/encoding.h"
#include "text/utf8.h"

#include <string>
#include <utility>

namespace genutil::fake {

// Knows two character sets: "Alphabet", in which each byte beyond ASCII is a Cyrillic letter, and "Pairs", in
// which a byte beyond ASCII and the one behind it, at least 40 (hex), are an ideograph.
class CodePages : public text::CodePages {
public:
    CodePages(std::string guess, std::string system) : guess_(std::move(guess)), system_(std::move(system)) {}

    std::optional<Decoded> decode(const std::string& name, std::string_view bytes) const override {
        if (name != "Alphabet" && name != "Pairs")
            return text::basicCodePages().decode(name, bytes);
        Decoded decoded{{}, true};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes[i]);
            const auto next = static_cast<unsigned char>(i + 1 < bytes.size() ? bytes[i + 1] : 0);
            if (byte < 0x80)
                decoded.text += bytes[i];
            else if (name == "Alphabet")
                text::appendUtf8(decoded.text, 0x0380u + byte);
            else if (next >= 0x40)
                text::appendUtf8(
                    decoded.text, 0x4E00u + (byte & 0x7Fu) * 0x100 + static_cast<unsigned char>(bytes[++i]));
            else {
                text::appendUtf8(decoded.text, text::replacementCharacter);
                decoded.exact = false;
            }
        }
        return decoded;
    }

    std::optional<Encoded> encode(const std::string& name, std::string_view text) const override {
        if (name != "Alphabet" && name != "Pairs")
            return text::basicCodePages().encode(name, text);
        Encoded encoded;
        for (std::size_t at = 0; at < text.size();) {
            const auto [codePoint, length, valid] = text::decodeUtf8(text, at);
            if (codePoint < 0x80) {
                encoded.bytes += char(codePoint);
            } else if (name == "Alphabet" && codePoint >= 0x0400 && codePoint < 0x0480) {
                encoded.bytes += char(codePoint - 0x0380);
            } else if (name == "Pairs" && codePoint >= 0x4E00 && codePoint < 0xCE00) {
                encoded.bytes += char(0x80 | ((codePoint - 0x4E00) >> 8));
                encoded.bytes += char(codePoint & 0xFF);
            } else {
                encoded.refusedAt = at;
                break;
            }
            at += length;
        }
        return encoded;
    }

    std::string guess(std::string_view) const override { return guess_; }
    std::string systemCodePage() const override { return system_; }

private:
    std::string guess_;
    std::string system_;
};

} // namespace genutil::fake
