#include "platform/system/open_file.h"

#include "platform/system/block_io.h"
#include "platform/system/failures.h"
#include "platform/system/regular_file.h"
#include "platform/system/safety_copy.h"

#include <fcntl.h>

namespace genutil {
namespace {

class OpenFile : public text::ByteSource {
public:
    explicit OpenFile(RegularFile source) : source_(std::move(source)) {
        ::posix_fadvise(source_.file.number(), 0, 0, POSIX_FADV_SEQUENTIAL);
    }
    std::uint64_t expectedSize() const override { return std::uint64_t(source_.status.st_size); }
    std::size_t read(std::span<char> into) override {
        return readBlock(source_.file.number(), into, source_.path);
    }

private:
    RegularFile source_;
};

} // namespace

std::unique_ptr<text::ByteSource> openFile(const std::string& path) {
    checkName(path);
    undoInterruptedSave(path);
    return std::make_unique<OpenFile>(openExisting(path, O_RDONLY, "opened"));
}

} // namespace genutil
