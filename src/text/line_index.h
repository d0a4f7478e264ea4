#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace genutil::text {

// Places in a text where a line starts behind a line end, in rising order: four bytes each at any size of
// text, and never moved while the list grows.
class LineStarts {
public:
    void append(std::uint64_t offset);

    std::size_t size() const { return size_; }
    std::uint64_t operator[](std::size_t index) const;
    // How many of the starts are at or before the offset; only those from `first` up to `last` are looked at.
    std::size_t countUpTo(std::uint64_t offset, std::size_t first, std::size_t last) const;
    std::size_t countUpTo(std::uint64_t offset) const { return countUpTo(offset, 0, size_); }

private:
    static constexpr std::size_t blockSize = 1024;
    // The lower halves of the offsets.
    std::vector<std::unique_ptr<std::uint32_t[]>> blocks_;
    std::size_t size_ = 0;
    // For each multiple of 4 GiB that the offsets have passed, the first index behind it.
    std::vector<std::size_t> wraps_;
};

struct WidestLine {
    std::size_t index = 0;
    std::size_t columns = 0;
};

// False only for a line (UTF-8, without its line end) that columnsOf() would give no more than `columns`;
// quick, and mostly True only where it would.
bool mayTakeMoreColumns(std::string_view line, std::size_t columns);

// Finds the line starts and the widest line of a text while it arrives, and whether it is valid UTF-8.
// LF, CR LF and a lone CR each end a line.
class LineScanner {
public:
    // The text's first line starts at byte `begin`.
    explicit LineScanner(std::size_t begin = 0) : scanned_(begin), validated_(begin), lineStart_(begin) {}

    // Takes what has been added to the text since the last call. `text` is all that there is up to now, and
    // `complete` tells that no more will come.
    void scan(std::string_view text, bool complete);

    // Whether all that was scanned is strictly valid; an incomplete last character counts as invalid only in
    // a complete text.
    bool isValidUtf8() const { return valid_; }
    // The following are final after a scan of the complete text.
    LineStarts takeStarts() { return std::move(starts_); }
    WidestLine widest() const { return widest_; } // the first of equally wide lines
    // "\n", "\r\n" or "\r", whichever ends most lines; "\n" when none is ended.
    std::string_view commonestLineEnd() const;

private:
    void scanBlock(std::string_view text, std::size_t end, bool complete);
    void endLonelyReturns(std::string_view text, std::size_t end);
    void endLine(std::string_view text, std::size_t end, std::size_t next);
    void validate(std::string_view text, std::size_t end, bool complete);

    std::size_t scanned_;   // up to here, the line ends are known
    std::size_t validated_; // up to here, the text is known to be valid
    std::size_t lineStart_;
    LineStarts starts_;
    WidestLine widest_;
    std::size_t lineFeeds_ = 0;
    std::size_t pairs_ = 0;
    std::size_t returns_ = 0;
    bool valid_ = true;
    // ASCII without tabs, which has as many columns as bytes: the block at hand, and the line up to its end.
    bool plainBlock_ = true;
    bool plainLine_ = true;
};

} // namespace genutil::text
