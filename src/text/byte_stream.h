#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace genutil::text {

// Bytes that arrive one after another, such as an open file's.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    // How many bytes are expected; the source may prove longer or shorter.
    virtual std::uint64_t expectedSize() const = 0;
    // Fills `into` from its front and returns how many bytes came, which are none only at the end. Throws
    // what reading met.
    virtual std::size_t read(std::span<char> into) = 0;
};

// Takes the next bytes of a text that is being written. Throws what writing met.
using ByteSink = std::function<void(std::string_view bytes)>;

// All bytes of the source.
std::string readAll(ByteSource& source);

} // namespace genutil::text
