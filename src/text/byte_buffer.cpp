#include "text/byte_buffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace genutil::text {

namespace {

constexpr std::size_t smallestStep = std::size_t{64} * 1024;

} // namespace

void ByteBuffer::reserve(std::uint64_t capacity) {
    if (capacity <= capacity_)
        return;
    if (capacity > std::uint64_t(std::numeric_limits<std::ptrdiff_t>::max()))
        throw std::bad_alloc();
    auto* grown = static_cast<char*>(std::realloc(bytes_.get(), static_cast<std::size_t>(capacity)));
    if (grown == nullptr)
        throw std::bad_alloc();
    static_cast<void>(bytes_.release());
    bytes_.reset(grown);
    capacity_ = static_cast<std::size_t>(capacity);
}

std::span<char> ByteBuffer::room() {
    if (size_ == capacity_)
        reserve(std::uint64_t(capacity_) + std::max(smallestStep, capacity_ / 8));
    return {bytes_.get() + size_, capacity_ - size_};
}

void ByteBuffer::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::span<char> into = room();
        const std::size_t count = std::min(into.size(), bytes.size());
        std::memcpy(into.data(), bytes.data(), count);
        keep(count);
        bytes.remove_prefix(count);
    }
}

} // namespace genutil::text
