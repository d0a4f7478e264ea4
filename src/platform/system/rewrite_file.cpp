#include "platform/system/rewrite_file.h"

#include "hostif/error.h"
#include "platform/system/block_io.h"
#include "platform/system/failures.h"
#include "platform/system/safety_copy.h"
#include "platform/system/save_steps.h"

#include <cerrno>

#include <unistd.h>

namespace genutil {
namespace {

void rewrite(const RegularFile& target, const TemporaryFile& source, SafetyCopy& copy) {
    off_t size = 0;
    forEachBlock(source.number(), source.path(), [&](off_t at, std::string_view block) {
        beforeStep("write a block in place");
        writeBlockAt(target.file.number(), at, block, target.path);
        beforeStep("note the progress");
        copy.noteProgress(target);
        size = at + off_t(block.size());
    });
    beforeStep("give the new size");
    if (::ftruncate(target.file.number(), size) != 0)
        fail("Cannot truncate", target.path);
    beforeStep("store the new bytes in place");
    store(target.file.number(), target.path);
}

void putBack(const RegularFile& target, SafetyCopy& copy, const Error& failure) {
    try {
        copy.putBack(target);
    } catch (...) {
        const Error second = toError(std::current_exception());
        throw Error(failure.number(), failure.description() +
                                          ". What the file held before could not be put back (" +
                                          second.description() + "); that is in '" + copy.path() + "'");
    }
    copy.remove();
}

void checkStillNamed(const RegularFile& target) {
    struct stat named {};
    if (::lstat(target.path.c_str(), &named) != 0 || !isSameFile(named, target.status))
        refuse(target.path, "saved", "another file has taken its name meanwhile");
}

} // namespace

void rewriteInPlace(const RegularFile& target, const TemporaryFile& source) {
    if (!lockNow(target.file.number()) && errno == EWOULDBLOCK)
        refuse(target.path, "saved", "another program is saving it");
    checkStillNamed(target);
    SafetyCopy copy(target);
    try {
        rewrite(target, source, copy);
    } catch (...) {
        const Error failure = toError(std::current_exception());
        putBack(target, copy, failure);
        throw failure;
    }
    copy.remove();
}

} // namespace genutil
