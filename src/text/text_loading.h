#pragma once

#include "text/byte_buffer.h"
#include "text/byte_stream.h"
#include "text/encoding.h"
#include "text/line_index.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace genutil::text {

struct LoadedText {
    ByteBuffer bytes; // as read; empty when they were decoded and the decoding gives them back
    std::optional<std::string> decoded; // nothing where `bytes` are the text
    std::size_t begin = 0;              // where the text begins: behind the byte-order mark
    Encoding encoding;
    bool exact = true;
    std::string tail; // bytes behind the text that are half of a unit
    LineStarts starts;
    WidestLine widest;
    std::string_view lineEnd = "\n";

    std::string_view text() const { return decoded ? std::string_view(*decoded) : bytes.view(); }
};

// Takes the bytes of a text as they arrive, and finds out its encoding and its lines on the way.
class TextLoading {
public:
    // Throws std::bad_alloc when there is no memory for that many bytes.
    TextLoading(std::uint64_t expectedSize, const CodePages& pages, const std::optional<std::string>& wanted);

    // Throws what reading met.
    void readAll(ByteSource& source);
    void append(std::string_view bytes);
    // Throws std::invalid_argument for a wanted encoding that is not known.
    LoadedText finish();

private:
    void look(bool complete);
    void takeFront();
    void decode();

    const CodePages& pages_;
    const std::optional<std::string>& wanted_;
    LoadedText text_;
    std::optional<Encoding> encoding_; // what the front of the text says, or UTF-8 until it proves otherwise
    LineScanner scanner_;
};

} // namespace genutil::text
