#include "platform/system/scratch_file.h"

#include "hostif/error.h"
#include "platform/system/block_io.h"
#include "platform/system/failures.h"
#include "platform/system/private_folder.h"
#include "platform/system/regular_file.h"
#include "platform/system/temporary_file.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

constexpr mode_t ownMode = 0600;

// A file of a wanted name, made by us and removed as long as the name is still that of our file.
class NamedFile : public ScratchFile {
public:
    NamedFile(Descriptor file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}
    ~NamedFile() override {
        struct stat mine {
        }, named{};
        if (::fstat(file_.number(), &mine) == 0 && ::lstat(path_.c_str(), &named) == 0 &&
            isSameFile(mine, named))
            ::unlink(path_.c_str());
    }
    NamedFile(const NamedFile&) = delete;
    NamedFile& operator=(const NamedFile&) = delete;
    const std::string& path() const override { return path_; }
    const std::string& whyElsewhere() const override { return nowhereElse_; }
    int number() const { return file_.number(); }

private:
    Descriptor file_;
    std::string path_;
    std::string nowhereElse_;
};

class PrivateFile : public ScratchFile {
public:
    PrivateFile(TemporaryFile file, std::string why) : file_(std::move(file)), why_(std::move(why)) {}
    const std::string& path() const override { return file_.path(); }
    const std::string& whyElsewhere() const override { return why_; }
    int number() const { return file_.number(); }

private:
    TemporaryFile file_;
    std::string why_;
};

template<class File>
std::unique_ptr<ScratchFile> filled(std::unique_ptr<File> file, std::string_view bytes) {
    writeBlockAt(file->number(), 0, bytes, file->path());
    return file;
}

} // namespace

std::unique_ptr<ScratchFile> makeScratchFile(const std::string& name, std::string_view bytes) {
    checkName(name);
    std::error_code noFolder;
    const std::string path = fs::absolute(name, noFolder);
    Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownMode));
    if (file.isOpen())
        return filled(std::make_unique<NamedFile>(std::move(file), path), bytes);
    std::string why = errno == EEXIST
                          ? "'" + path + "' exists already and is left as it is"
                          : "'" + path + "' cannot be made: " + std::generic_category().message(errno);
    const NamePattern pattern{makePrivateFolder(), "scratch-", ".tmp"};
    removeLeftovers(pattern);
    TemporaryFile elsewhere(pattern, ownMode);
    if (!elsewhere.isOpen())
        fail("Cannot make a file in", pattern.folder);
    return filled(std::make_unique<PrivateFile>(std::move(elsewhere), std::move(why)), bytes);
}

} // namespace genutil
