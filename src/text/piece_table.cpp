#include "text/piece_table.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace genutil::text {

namespace {

// The last piece for which `isBefore` holds; it holds for the first one.
template<typename Predicate>
std::size_t lastOf(const PieceTable::Pieces& pieces, Predicate isBefore) {
    const auto after = std::partition_point(pieces.begin() + 1, pieces.end(), isBefore);
    return std::size_t(after - pieces.begin()) - 1;
}

} // namespace

void PieceTable::setOriginal(std::string_view original, std::size_t begin, LineStarts starts) {
    original_ = original;
    originalStarts_ = std::move(starts);
    pieces_.clear();
    if (begin == original.size())
        return;
    Piece whole;
    whole.begin = begin;
    whole.length = original.size() - begin;
    whole.lineEnds = originalStarts_.size();
    whole.beginsWithLineFeed = original[begin] == '\n';
    whole.endsWithReturn = original.back() == '\r';
    pieces_.push_back(whole);
}

std::uint64_t PieceTable::size() const {
    return pieces_.empty() ? 0 : pieces_.back().offset + pieces_.back().length;
}

std::size_t PieceTable::lineCount() const {
    return pieces_.empty() ? 1 : pieces_.back().line + pieces_.back().lineEnds + 1;
}

std::uint64_t PieceTable::lineStart(std::size_t line) const {
    if (line == 0)
        return 0;
    const Piece& piece = pieces_[lastOf(pieces_, [line](const Piece& p) { return p.line < line; })];
    return piece.offset + startsOf(piece)[piece.firstStart + (line - piece.line) - 1] - piece.begin;
}

std::uint64_t PieceTable::lineEnd(std::size_t line) const {
    if (line + 1 == lineCount())
        return size();
    std::uint64_t end = lineStart(line + 1) - 1;
    if (end > 0 && byteAt(end) == '\n' && byteAt(end - 1) == '\r')
        --end;
    return end;
}

std::size_t PieceTable::lineAt(std::uint64_t offset) const {
    if (pieces_.empty())
        return 0;
    const Piece& piece = pieces_[pieceAt(offset)];
    const std::uint64_t inBuffer = piece.begin + (offset - piece.offset);
    const std::size_t last = piece.firstStart + piece.lineEnds;
    return piece.line + startsOf(piece).countUpTo(inBuffer, piece.firstStart, last) - piece.firstStart;
}

char PieceTable::byteAt(std::uint64_t offset) const {
    const Piece& piece = pieces_[pieceAt(offset)];
    return bytesOf(piece)[offset - piece.offset];
}

std::string_view PieceTable::stretch(std::uint64_t begin, std::uint64_t end) const {
    if (begin >= end)
        return {};
    const Piece& piece = pieces_[pieceAt(begin)];
    return bytesOf(piece).substr(begin - piece.offset, end - begin);
}

PieceTable::Lines PieceTable::wholeLinesAround(std::size_t line) const {
    const std::uint64_t begin = lineStart(line);
    if (begin == size())
        return {};
    const Piece& piece = pieces_[pieceAt(begin)];
    const std::uint64_t end = piece.offset + piece.length;
    Lines lines{lineAt(piece.offset), end == size() ? lineCount() : lineAt(end)};
    if (lineStart(lines.first) < piece.offset)
        ++lines.first;
    return line < lines.last ? lines : Lines{};
}

std::string PieceTable::copy(std::uint64_t begin, std::uint64_t end) const {
    std::string text;
    if (begin >= end)
        return text;
    text.reserve(end - begin);
    for (std::size_t i = pieceAt(begin); begin < end; ++i) {
        const Piece& piece = pieces_[i];
        const std::uint64_t next = std::min(end, piece.offset + piece.length);
        text += bytesOf(piece).substr(begin - piece.offset, next - begin);
        begin = next;
    }
    return text;
}

Piece PieceTable::add(std::string_view text) {
    Piece piece;
    piece.buffer = Piece::Buffer::Added;
    piece.begin = added_.size();
    piece.length = text.size();
    piece.firstStart = addedStarts_.size();
    piece.beginsWithLineFeed = text.starts_with('\n');
    piece.endsWithReturn = text.ends_with('\r');
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n' || (text[i] == '\r' && !text.substr(i + 1).starts_with('\n')))
            addedStarts_.append(added_.size() + i + 1);
    piece.lineEnds = addedStarts_.size() - piece.firstStart;
    added_ += text;
    return piece;
}

PieceTable::Pieces PieceTable::splice(std::uint64_t offset, std::uint64_t length, const Pieces& replacement) {
    const std::uint64_t end = offset + length;
    // The pieces that are touched, and their neighbours, which may become one with the replacement.
    const std::size_t first = pieces_.empty() ? 0 : pieceAt(offset > 0 ? offset - 1 : 0);
    const std::size_t last = pieces_.empty() ? 0 : pieceAt(end) + 1;

    Pieces removed;
    Pieces now;
    const auto cut = [&](Pieces& into, const Piece& piece, std::uint64_t from, std::uint64_t to) {
        from = std::max(from, piece.offset);
        to = std::min(to, piece.offset + piece.length);
        if (from < to)
            append(into, part(piece, from - piece.offset, to - from));
    };
    for (std::size_t i = first; i < last; ++i) {
        cut(now, pieces_[i], 0, offset);
        cut(removed, pieces_[i], offset, end);
    }
    for (const Piece& piece : replacement)
        append(now, piece);
    for (std::size_t i = first; i < last; ++i)
        cut(now, pieces_[i], end, size());

    const auto at = [this](std::size_t index) { return pieces_.begin() + std::ptrdiff_t(index); };
    const std::size_t kept = std::min(now.size(), last - first);
    std::copy_n(now.begin(), kept, at(first));
    pieces_.erase(at(first + kept), at(last));
    pieces_.insert(at(first + kept), now.begin() + std::ptrdiff_t(kept), now.end());
    place(first);
    return removed;
}

std::uint64_t PieceTable::lengthOf(const Pieces& pieces) {
    std::uint64_t length = 0;
    for (const Piece& piece : pieces)
        length += piece.length;
    return length;
}

std::string_view PieceTable::bytesOf(const Piece& piece) const {
    const std::string_view buffer = piece.buffer == Piece::Buffer::Original ? original_ : added_;
    return buffer.substr(piece.begin, piece.length);
}

const LineStarts& PieceTable::startsOf(const Piece& piece) const {
    return piece.buffer == Piece::Buffer::Original ? originalStarts_ : addedStarts_;
}

// The piece that holds the byte, or the last one. There must be one.
std::size_t PieceTable::pieceAt(std::uint64_t offset) const {
    return lastOf(pieces_, [offset](const Piece& piece) { return piece.offset <= offset; });
}

Piece PieceTable::part(const Piece& whole, std::uint64_t from, std::uint64_t length) const {
    if (length == whole.length)
        return whole;
    const LineStarts& starts = startsOf(whole);
    const std::size_t last = whole.firstStart + whole.lineEnds;
    Piece piece = whole;
    piece.begin += from;
    piece.length = length;
    piece.firstStart = starts.countUpTo(piece.begin, whole.firstStart, last);
    piece.lineEnds = starts.countUpTo(piece.begin + length, piece.firstStart, last) - piece.firstStart;
    piece.beginsWithLineFeed = bytesOf(piece).front() == '\n';
    piece.endsWithReturn = bytesOf(piece).back() == '\r';
    return piece;
}

void PieceTable::append(Pieces& pieces, const Piece& piece) {
    if (!pieces.empty()) {
        Piece& before = pieces.back();
        if (before.buffer == piece.buffer && before.begin + before.length == piece.begin) {
            before.length += piece.length;
            before.lineEnds += piece.lineEnds;
            before.endsWithReturn = piece.endsWithReturn;
            return;
        }
    }
    pieces.push_back(piece);
}

void PieceTable::place(std::size_t first) {
    for (std::size_t i = first; i < pieces_.size(); ++i) {
        Piece& piece = pieces_[i];
        piece.offset = 0;
        piece.line = 0;
        if (i == 0)
            continue;
        const Piece& before = pieces_[i - 1];
        const bool oneLineEnd = before.endsWithReturn && piece.beginsWithLineFeed;
        piece.offset = before.offset + before.length;
        piece.line = before.line + before.lineEnds - (oneLineEnd ? 1 : 0);
    }
}

} // namespace genutil::text
