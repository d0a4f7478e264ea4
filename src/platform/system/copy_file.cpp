#include "platform/system/copy_file.h"

#include "platform/system/block_io.h"
#include "platform/system/failures.h"
#include "platform/system/regular_file.h"
#include "platform/system/safety_copy.h"
#include "platform/system/save_file.h"

#include <fcntl.h>

namespace genutil {

void copyFile(const std::string& from, const std::string& to) {
    checkName(from);
    checkName(to);
    undoInterruptedSave(from);
    const RegularFile source = openExisting(from, O_RDONLY, "copied");
    struct stat there {};
    if (::stat(to.c_str(), &there) == 0 && isSameFile(there, source.status))
        return;
    const auto write = [&](const text::ByteSink& sink) {
        std::vector<char> block(blockSize);
        while (const std::size_t size = readBlock(source.file.number(), block, from))
            sink({block.data(), size});
    };
    saveFile(to, write, source.status.st_mode & 0777);
}

} // namespace genutil
