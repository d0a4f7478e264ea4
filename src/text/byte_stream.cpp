#include "text/byte_stream.h"

namespace genutil::text {

std::string readAll(ByteSource& source) {
    constexpr std::size_t blockSize = std::size_t{64} * 1024;
    std::string bytes;
    bytes.reserve(std::size_t(source.expectedSize()) + blockSize);
    for (std::size_t filled = 0;;) {
        bytes.resize(filled + blockSize);
        const std::size_t got = source.read({bytes.data() + filled, blockSize});
        filled += got;
        if (got == 0) {
            bytes.resize(filled);
            return bytes;
        }
    }
}

} // namespace genutil::text
