#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace genutil {

// A piece of UTF-8 text in the units that the toolkit counts in, with the way back. Bytes that are no
// character are the U+FFFD that is shown for them.
class Utf16Text {
public:
    // An empty text.
    Utf16Text() : Utf16Text(std::string_view()) {}
    explicit Utf16Text(std::string_view utf8);

    const QString& text() const { return text_; }
    int size() const { return int(text_.size()); }
    // Units outside of the text count as its nearest end.
    std::size_t byteOf(int unit) const;
    // The first unit of the character that holds the byte; the text's end for a byte behind it.
    int unitOf(std::size_t byte) const;

private:
    QString text_;
    std::vector<std::uint32_t> bytes_; // of each unit; one more for the end
};

} // namespace genutil
