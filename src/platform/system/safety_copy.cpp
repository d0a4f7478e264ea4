#include "platform/system/safety_copy.h"

#include "hostif/error.h"
#include "platform/system/block_io.h"
#include "platform/system/failures.h"
#include "platform/system/private_folder.h"
#include "platform/system/save_steps.h"

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

constexpr const char* copySuffix = ".before-save";

NamePattern unfinished(const std::string& folder) {
    return {folder, "saving-", ".tmp"};
}

// Tells a file apart from every other that ever had its place: the moment it was made, or else its disk.
std::string identityOf(int file) {
    struct statx status {};
    if (::statx(file, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &status) != 0)
        return {};
    std::array<char, 80> text{};
    if (status.stx_mask & STATX_BTIME)
        std::snprintf(text.data(), text.size(), ".%" PRIx64 "-%" PRIx64 ".%09u",
            std::uint64_t(status.stx_ino), std::uint64_t(status.stx_btime.tv_sec),
            unsigned(status.stx_btime.tv_nsec));
    else
        std::snprintf(text.data(), text.size(), ".%" PRIx64 "-on-%x.%x", std::uint64_t(status.stx_ino),
            unsigned(status.stx_dev_major), unsigned(status.stx_dev_minor));
    return text.data();
}

// Rewrites what differs only, so that as little as possible can fail.
void restore(int original, const std::string& path, int copy, const std::string& copyPath) {
    std::vector<char> present(blockSize);
    off_t size = 0;
    forEachBlock(copy, copyPath, [&](off_t at, std::string_view old) {
        const std::size_t came = readBlockAt(original, at, present, path);
        beforeStep("put back a block");
        if (std::string_view(present.data(), came).substr(0, old.size()) != old)
            writeBlockAt(original, at, old, path);
        size = at + off_t(old.size());
    });
    struct stat status {};
    beforeStep("put back the size");
    if (::fstat(original, &status) != 0 || (status.st_size != size && ::ftruncate(original, size) != 0))
        fail("Cannot put back the size of", path);
    beforeStep("store what was put back");
    store(original, path);
}

void removeStored(const std::string& copyPath) {
    beforeStep("remove safety copy");
    ::unlink(copyPath.c_str());
    beforeStep("store the removal of the safety copy");
    storeNames(folderOf(copyPath));
}

// A later time by more than passes between a write and its note is another program's.
bool writtenByOthersSince(const struct stat& copy, const struct stat& original) {
    constexpr time_t seconds = 10;
    return original.st_mtim.tv_sec > copy.st_mtim.tv_sec + seconds;
}

void undoFrom(const std::string& copyPath, const RegularFile& target) {
    const Descriptor copy(::open(copyPath.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat kept {};
    // A locked copy belongs to a save that is still going on; one without a name has just been dealt with.
    if (!copy.isOpen() || !lockNow(copy.number()) || ::fstat(copy.number(), &kept) != 0 || kept.st_nlink == 0)
        return;
    if (writtenByOthersSince(kept, target.status))
        return;
    try {
        const RegularFile original = openExisting(target.path, O_RDWR, "opened");
        if (!isSameFile(original.status, target.status))
            return;
        restore(original.file.number(), original.path, copy.number(), copyPath);
    } catch (const Error& error) {
        throw Error(error.number(),
            "Saving '" + target.path +
                "' was interrupted, and what it held before could not be put back; that is in '" + copyPath +
                "'. " + error.description());
    }
    removeStored(copyPath);
}

std::vector<std::string> copiesOf(const std::string& identity, const std::string& folder) {
    std::vector<std::string> copies;
    std::error_code unreadable;
    for (fs::directory_iterator entry(folder, unreadable), end; !unreadable && entry != end;
         entry.increment(unreadable)) {
        if (entry->path().string().ends_with(identity + copySuffix))
            copies.push_back(entry->path());
    }
    return copies;
}

} // namespace

TemporaryFile makePrivateFile() {
    const std::string folder = makePrivateFolder();
    TemporaryFile file(unfinished(folder), S_IRUSR | S_IWUSR);
    if (!file.isOpen())
        fail("Cannot make a safety copy in", folder);
    return file;
}

SafetyCopy::SafetyCopy(const RegularFile& original) : copy_(makePrivateFile()) {
    forEachBlock(original.file.number(), original.path, [&](off_t at, std::string_view block) {
        beforeStep("copy a block");
        writeBlockAt(copy_.number(), at, block, copy_.path());
    });
    noteProgress(original);
    beforeStep("store safety copy");
    store(copy_.number(), copy_.path());
    const std::string folder = folderOf(copy_.path());
    const std::string ending = identityOf(original.file.number()) + copySuffix;
    path_ = fs::path(folder) / (cutName(nameOf(original.path), folder, ending.size()) + ending);
    beforeStep("name safety copy");
    if (!copy_.renameTo(path_))
        fail("Cannot make the safety copy", path_);
    beforeStep("store the name of the safety copy");
    storeNames(folder);
}

void SafetyCopy::noteProgress(const RegularFile& original) {
    struct stat status {};
    if (::fstat(original.file.number(), &status) != 0)
        return;
    const timespec times[2]{{0, UTIME_OMIT}, status.st_mtim};
    ::futimens(copy_.number(), times);
}

void SafetyCopy::putBack(const RegularFile& original) {
    restore(original.file.number(), original.path, copy_.number(), path_);
}

void SafetyCopy::remove() {
    removeStored(path_);
}

void undoInterruptedSave(const std::string& path) {
    for (const std::string& folder : privateFolders()) {
        if (!isPrivate(folder))
            continue;
        removeLeftovers(unfinished(folder));
        RegularFile target;
        const Descriptor seen(::open(path.c_str(), O_PATH | O_CLOEXEC));
        if (!seen.isOpen() || ::fstat(seen.number(), &target.status) != 0 || !S_ISREG(target.status.st_mode))
            continue;
        target.path = path;
        const std::string identity = identityOf(seen.number());
        for (const std::string& copy : copiesOf(identity, folder))
            undoFrom(copy, target);
    }
}

} // namespace genutil
