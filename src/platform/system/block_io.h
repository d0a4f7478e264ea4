#pragma once

#include "text/byte_stream.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace genutil {

inline constexpr std::size_t blockSize = 1 << 16; // bytes

// Reads from where the file stands until the block is full or the file ends. Throws Error naming the path; a
// file that would have to be waited for is an error.
std::size_t readBlock(int file, std::span<char> into, const std::string& path);
// The same from a place of the file, wherever the file stands.
std::size_t readBlockAt(int file, off_t at, std::span<char> into, const std::string& path);
void writeBlockAt(int file, off_t at, std::string_view bytes, const std::string& path);

// Calls `use` with one block after another, from the file's start to its end.
void forEachBlock(
    int file, const std::string& path, const std::function<void(off_t at, std::string_view block)>& use);

// Has the system put the file's bytes on the disk.
void store(int file, const std::string& path);
// The same for the names in a folder; nothing where the system cannot.
void storeNames(const std::string& folder);

// Gathers small pieces into blocks.
class BlockWriter {
public:
    using Put = std::function<void(off_t at, std::string_view block)>;
    explicit BlockWriter(Put put) : put_(std::move(put)) { block_.reserve(blockSize); }
    void add(std::string_view bytes);
    // Hands over what is left.
    void finish();

private:
    Put put_;
    std::string block_;
    off_t at_ = 0;
};

} // namespace genutil
