#pragma once

#include "text/encoding.h"

namespace genutil {

// The character sets that the system converts. Nothing is replaced by something similar: a character that the
// set lacks is refused, and so is one that would come back as another.
class SystemCodePages : public text::CodePages {
public:
    std::optional<Decoded> decode(const std::string& name, std::string_view bytes) const override;
    std::optional<Encoded> encode(const std::string& name, std::string_view text) const override;
    // Looks at the first 256 KiB. Never a set whose bytes are all below 128, nor one of 16- or 32-bit units.
    std::string guess(std::string_view bytes) const override;
    // That of the user's locale; windows-1252 where it is UTF-8 or ASCII.
    std::string systemCodePage() const override;
};

} // namespace genutil
