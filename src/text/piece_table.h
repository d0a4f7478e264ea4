#pragma once

#include "text/line_index.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace genutil::text {

// A stretch of one of the two buffers.
struct Piece {
    enum class Buffer : bool { Original, Added };
    Buffer buffer = Buffer::Original;
    bool beginsWithLineFeed = false;
    bool endsWithReturn = false;
    std::uint64_t begin = 0; // bytes in the buffer
    std::uint64_t length = 0;
    std::size_t firstStart = 0; // index of the first line start of the buffer behind `begin`
    std::size_t lineEnds = 0;   // line starts of the buffer behind `begin`, up to the piece's end

    // Where the piece stands in the text: what comes before it.
    std::uint64_t offset = 0;
    std::size_t line = 0;
};

// A text as a sequence of pieces of two buffers, neither of which ever changes: the original text and a
// second one that only grows. Offsets are bytes of the text. A CR that ends a piece and an LF that begins the
// next are one line end.
class PieceTable {
public:
    using Pieces = std::vector<Piece>;

    // The original is referred to, not copied. Its first `begin` bytes are no part of the text, but count in
    // `starts`.
    void setOriginal(std::string_view original, std::size_t begin, LineStarts starts);

    std::uint64_t size() const;
    std::size_t lineCount() const;
    // Line numbers must be below lineCount(), offsets at most size().
    std::uint64_t lineStart(std::size_t line) const;
    // Behind the last character before the line end.
    std::uint64_t lineEnd(std::size_t line) const;
    // The line that the place before this byte is in; between CR and LF, the line that they end.
    std::size_t lineAt(std::uint64_t offset) const;

    char byteAt(std::uint64_t offset) const;
    // The bytes from `begin` on up to `end`, or to the end of the piece that holds the first.
    std::string_view stretch(std::uint64_t begin, std::uint64_t end) const;
    // The lines from the first on, before the last, that lie in one piece with this one, line ends included;
    // none when it spans pieces or is empty at the end of the text.
    struct Lines {
        std::size_t first = 0;
        std::size_t last = 0;
    };
    Lines wholeLinesAround(std::size_t line) const;
    std::string copy(std::uint64_t begin, std::uint64_t end) const;

    // Puts the text at the end of the growing buffer, as a piece for splice().
    Piece add(std::string_view text);
    // Puts pieces in the place of some bytes, and returns what they were.
    Pieces splice(std::uint64_t offset, std::uint64_t length, const Pieces& replacement);
    static std::uint64_t lengthOf(const Pieces& pieces);
    // Pieces that follow each other in their buffer too become one.
    static void append(Pieces& pieces, const Piece& piece);

private:
    std::string_view bytesOf(const Piece& piece) const;
    const LineStarts& startsOf(const Piece& piece) const;
    std::size_t pieceAt(std::uint64_t offset) const;
    Piece part(const Piece& whole, std::uint64_t from, std::uint64_t length) const;
    void place(std::size_t first);

    std::string_view original_;
    std::string added_;
    LineStarts originalStarts_;
    LineStarts addedStarts_;
    Pieces pieces_; // none is empty
};

} // namespace genutil::text
