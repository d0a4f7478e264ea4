#include "platform/system/save_file.h"

#include "platform/system/block_io.h"
#include "platform/system/failures.h"
#include "platform/system/file_attributes.h"
#include "platform/system/regular_file.h"
#include "platform/system/rewrite_file.h"
#include "platform/system/safety_copy.h"
#include "platform/system/save_steps.h"
#include "platform/system/temporary_file.h"

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

constexpr mode_t usualMode = 0666; // less what the user's mask takes away
constexpr mode_t ownMode = 0600;

// The file that a name and the symbolic links of its last part lead to, existing or not.
std::string behindLinks(const std::string& path) {
    constexpr int longestChain = 40;
    fs::path at = path;
    for (int link = 0; link < longestChain; ++link) {
        std::error_code noLink;
        const fs::path next = fs::read_symlink(at, noLink);
        if (noLink)
            return at;
        at = next.is_absolute() ? next : at.parent_path() / next;
    }
    refuse(path, "saved", "its symbolic links form a loop");
}

NamePattern besidePattern(const std::string& target) {
    const std::string folder = folderOf(target);
    const std::string mark = ".save-";
    const std::string suffix = ".tmp";
    const std::string front = cutName(nameOf(target), folder, 1 + mark.size() + suffix.size());
    return {folder, "." + front + mark, suffix};
}

// A file beside the target that may take its name; not open when the target has to be written in place.
TemporaryFile makeBeside(const RegularFile& target, std::optional<mode_t> newMode) {
    const NamePattern pattern = besidePattern(target.path);
    removeLeftovers(pattern);
    const bool isNew = !target.file.isOpen();
    if (!isNew && target.status.st_nlink > 1)
        return {};
    TemporaryFile beside(pattern, isNew && !newMode ? usualMode : ownMode);
    const bool mayWriteInPlace = !isNew && (errno == EACCES || errno == EPERM || errno == EROFS);
    if (!beside.isOpen() && !mayWriteInPlace)
        fail("Cannot make a file beside", target.path);
    if (beside.isOpen() && !isNew && !giveOwner(target.status, beside.number()))
        return {};
    return beside;
}

void fill(const TemporaryFile& spool, const std::string& target,
    const std::function<void(const text::ByteSink& sink)>& write) {
    BlockWriter blocks([&](off_t at, std::string_view block) {
        beforeStep("write a block");
        writeBlockAt(spool.number(), at, block, target);
    });
    write([&](std::string_view bytes) { blocks.add(bytes); });
    blocks.finish();
}

// Whether the temporary file has taken the target's name.
bool replace(const RegularFile& target, TemporaryFile& beside, std::optional<mode_t> newMode) {
    const bool isNew = !target.file.isOpen();
    beforeStep("give permissions");
    if (!isNew && !giveAttributes(target, beside.number()))
        return false;
    if (isNew && newMode && ::fchmod(beside.number(), *newMode) != 0)
        fail("Cannot give permissions to", target.path);
    beforeStep("store the new bytes");
    store(beside.number(), target.path);
    beforeStep("take the name");
    if (!beside.renameTo(target.path)) {
        if (isNew)
            fail("Cannot name", target.path);
        return false;
    }
    beforeStep("store the name");
    storeNames(folderOf(target.path));
    return true;
}

} // namespace

void saveFile(const std::string& path, const std::function<void(const text::ByteSink& sink)>& write,
    std::optional<mode_t> newMode) {
    checkName(path);
    const std::string name = behindLinks(path);
    undoInterruptedSave(name);
    const RegularFile target = openIfThere(name, O_RDWR, Links::Refuse, "saved");
    TemporaryFile beside = makeBeside(target, newMode);
    const bool mayReplace = beside.isOpen();
    TemporaryFile spool = mayReplace ? std::move(beside) : makePrivateFile();
    fill(spool, target.path, write);
    if (!mayReplace || !replace(target, spool, newMode))
        rewriteInPlace(target, spool);
}

} // namespace genutil
