#include "platform/system/block_io.h"

#include "hostif/error.h"
#include "platform/system/descriptor.h"
#include "platform/system/failures.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace genutil {
namespace {

template<class Read>
std::size_t readAll(std::span<char> into, const std::string& path, const Read& read) {
    std::size_t filled = 0;
    while (filled < into.size()) {
        const ssize_t came = read(filled);
        if (came == 0)
            break;
        if (came > 0)
            filled += std::size_t(came);
        else if (errno == EAGAIN)
            throw Error(errors::DeviceError,
                "Cannot read '" + path + "': it is not an ordinary file, and reading it would wait for data");
        else if (errno != EINTR)
            fail("Cannot read", path);
    }
    return filled;
}

} // namespace

std::size_t readBlock(int file, std::span<char> into, const std::string& path) {
    return readAll(into, path,
        [&](std::size_t filled) { return ::read(file, into.data() + filled, into.size() - filled); });
}

std::size_t readBlockAt(int file, off_t at, std::span<char> into, const std::string& path) {
    return readAll(into, path, [&](std::size_t filled) {
        return ::pread(file, into.data() + filled, into.size() - filled, at + off_t(filled));
    });
}

void writeBlockAt(int file, off_t at, std::string_view bytes, const std::string& path) {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(file, bytes.data(), bytes.size(), at);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            fail("Cannot write", path);
        bytes.remove_prefix(std::size_t(written));
        at += written;
    }
}

void forEachBlock(
    int file, const std::string& path, const std::function<void(off_t at, std::string_view block)>& use) {
    std::vector<char> block(blockSize);
    off_t at = 0;
    while (const std::size_t size = readBlockAt(file, at, block, path)) {
        use(at, {block.data(), size});
        at += off_t(size);
    }
}

void store(int file, const std::string& path) {
    if (::fsync(file) != 0)
        fail("Cannot store", path);
}

void storeNames(const std::string& folder) {
    const Descriptor names(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (names.isOpen() && ::fsync(names.number()) != 0 && errno == EIO)
        fail("Cannot store the names of", folder);
}

void BlockWriter::add(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t size = std::min(bytes.size(), blockSize - block_.size());
        block_ += bytes.substr(0, size);
        bytes.remove_prefix(size);
        if (block_.size() == blockSize)
            finish();
    }
}

void BlockWriter::finish() {
    if (block_.empty())
        return;
    put_(at_, block_);
    at_ += off_t(block_.size());
    block_.clear();
}

} // namespace genutil
