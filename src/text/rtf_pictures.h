#pragma once

#include "text/rich_text.h"

#include <optional>
#include <string>
#include <string_view>

namespace genutil::text::rtf {

// The longest length, indent or side of a picture: 22 inches.
inline constexpr int longestLength = 31680;

// Reads one picture after the other.
class PictureInput {
public:
    void start() { *this = {}; }
    void setKind(Picture::Kind kind) { kind_ = kind; }
    void setWidth(int twips) { width_ = twips; }
    void setHeight(int twips) { height_ = twips; }
    void setScaleX(int percent) { scaleX_ = percent; }
    void setScaleY(int percent) { scaleY_ = percent; }
    // Other characters than hexadecimal digits are passed over.
    void addHex(std::string_view digits);
    void addBytes(std::string_view bytes) { bytes_ += bytes; }
    // Nothing for a picture of another kind and for one without bytes.
    std::optional<Picture> finish();

private:
    std::optional<Picture::Kind> kind_;
    int width_ = 0;
    int height_ = 0;
    int scaleX_ = 100;
    int scaleY_ = 100;
    int halfByte_ = -1; // the first digit of a byte
    std::string bytes_;
};

} // namespace genutil::text::rtf
