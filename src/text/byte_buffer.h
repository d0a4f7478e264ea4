#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>

namespace genutil::text {

// Bytes that grow at the end. Memory is taken as it comes, neither cleared nor, where the system can move
// pages, copied when it grows. Throws std::bad_alloc.
class ByteBuffer {
public:
    void reserve(std::uint64_t capacity);
    // Room behind the last byte, at least one byte of it; keep() then counts what has been written there.
    std::span<char> room();
    void keep(std::size_t bytes) { size_ += bytes; }
    void append(std::string_view bytes);

    std::string_view view() const { return {bytes_.get(), size_}; }

private:
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); }
    };
    std::unique_ptr<char, Free> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace genutil::text
