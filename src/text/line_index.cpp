#include "text/line_index.h"

#include "text/character_width.h"
#include "text/utf8.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace genutil::text {

namespace {

// What is looked at at once: it stays in the processor's nearest cache while line ends, tabs and characters
// beyond ASCII are searched one after the other.
constexpr std::size_t scanBlockSize = std::size_t{16} * 1024;

const char* findByte(std::string_view text, std::size_t begin, std::size_t end, char byte) {
    return static_cast<const char*>(std::memchr(text.data() + begin, byte, end - begin));
}

bool isAscii(std::string_view text) {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::uint64_t seen = 0;
    std::size_t position = 0;
    for (; text.size() - position >= 4 * sizeof seen; position += 4 * sizeof seen) {
        std::uint64_t words[4];
        std::memcpy(words, text.data() + position, sizeof words);
        seen |= words[0] | words[1] | words[2] | words[3];
    }
    for (; position < text.size(); ++position)
        seen |= static_cast<unsigned char>(text[position]);
    return (seen & highBits) == 0;
}

std::size_t countTabs(std::string_view text) {
    constexpr std::uint64_t tabs = 0x0909090909090909;
    constexpr std::uint64_t lowBits = 0x7F7F7F7F7F7F7F7F;
    std::size_t count = 0;
    std::size_t position = 0;
    for (std::uint64_t word = 0; text.size() - position >= sizeof word; position += sizeof word) {
        std::memcpy(&word, text.data() + position, sizeof word);
        word ^= tabs;
        // The top bit of each byte stays clear where the byte has become zero.
        count += sizeof word -
                 static_cast<std::size_t>(std::popcount((((word & lowBits) + lowBits) | word) & ~lowBits));
    }
    return count +
           static_cast<std::size_t>(std::count(text.begin() + std::ptrdiff_t(position), text.end(), '\t'));
}

} // namespace

// No character takes more columns than bytes, but a tab takes up to tabStop.
bool mayTakeMoreColumns(std::string_view line, std::size_t columns) {
    if (line.size() > columns)
        return true;
    return line.size() * tabStop > columns && line.size() + countTabs(line) * (tabStop - 1) > columns;
}

void LineStarts::append(std::uint64_t offset) {
    while (offset >> 32 > wraps_.size())
        wraps_.push_back(size_);
    if (size_ % blockSize == 0)
        blocks_.push_back(std::make_unique_for_overwrite<std::uint32_t[]>(blockSize));
    blocks_.back()[size_ % blockSize] = static_cast<std::uint32_t>(offset);
    ++size_;
}

std::uint64_t LineStarts::operator[](std::size_t index) const {
    const std::uint64_t low = blocks_[index / blockSize][index % blockSize];
    if (wraps_.empty())
        return low;
    const auto passed = std::ranges::upper_bound(wraps_, index) - wraps_.begin();
    return (static_cast<std::uint64_t>(passed) << 32) | low;
}

std::size_t LineStarts::countUpTo(std::uint64_t offset, std::size_t first, std::size_t last) const {
    while (first < last) {
        const std::size_t middle = first + (last - first) / 2;
        if ((*this)[middle] <= offset)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

void LineScanner::scan(std::string_view text, bool complete) {
    while (scanned_ < text.size()) {
        const std::size_t end = std::min(text.size(), scanned_ + scanBlockSize);
        const std::size_t before = scanned_;
        scanBlock(text, end, complete);
        if (scanned_ == before)
            break; // a CR that waits for what follows it
    }
    if (complete) {
        validate(text, text.size(), true);
        endLine(text, text.size(), text.size());
    }
}

void LineScanner::scanBlock(std::string_view text, std::size_t end, bool complete) {
    // A CR may be half of a pair: a block ends behind what follows it.
    while (text[end - 1] == '\r' && end < text.size())
        ++end;
    if (text[end - 1] == '\r' && !complete)
        --end;
    if (end == scanned_)
        return;

    const std::string_view block = text.substr(scanned_, end - scanned_);
    const bool ascii = isAscii(block);
    if (ascii && validated_ == scanned_)
        validated_ = end;
    else
        validate(text, end, complete && end == text.size());

    plainBlock_ = ascii && findByte(text, scanned_, end, '\t') == nullptr;
    plainLine_ = plainLine_ && plainBlock_;
    const bool returns = findByte(text, scanned_, end, '\r') != nullptr;
    while (const char* found = findByte(text, scanned_, end, '\n')) {
        const auto lineFeed = static_cast<std::size_t>(found - text.data());
        const bool pair = lineFeed > scanned_ && text[lineFeed - 1] == '\r';
        if (returns)
            endLonelyReturns(text, lineFeed - (pair ? 1 : 0));
        ++(pair ? pairs_ : lineFeeds_);
        endLine(text, lineFeed - (pair ? 1 : 0), lineFeed + 1);
    }
    if (returns)
        endLonelyReturns(text, end);
    scanned_ = end;
}

void LineScanner::endLonelyReturns(std::string_view text, std::size_t end) {
    while (const char* found = findByte(text, scanned_, end, '\r')) {
        const auto position = static_cast<std::size_t>(found - text.data());
        ++returns_;
        endLine(text, position, position + 1);
    }
}

void LineScanner::endLine(std::string_view text, std::size_t end, std::size_t next) {
    const std::string_view line = text.substr(lineStart_, end - lineStart_);
    if (plainLine_ ? line.size() > widest_.columns : mayTakeMoreColumns(line, widest_.columns)) {
        const std::size_t columns = plainLine_ ? line.size() : columnsOf(line);
        if (columns > widest_.columns)
            widest_ = {starts_.size(), columns};
    }
    if (next > end) {
        starts_.append(next);
        lineStart_ = scanned_ = next;
        plainLine_ = plainBlock_;
    }
}

void LineScanner::validate(std::string_view text, std::size_t end, bool complete) {
    if (!valid_)
        return;
    validated_ += validUtf8Prefix(text.substr(validated_, end - validated_));
    // A character that the block cuts off is looked at again with the next one.
    valid_ = validated_ == end || (!complete && beginsUtf8(text.substr(validated_, end - validated_)));
}

std::string_view LineScanner::commonestLineEnd() const {
    if (pairs_ > lineFeeds_ && pairs_ >= returns_)
        return "\r\n";
    return returns_ > lineFeeds_ ? "\r" : "\n";
}

} // namespace genutil::text
