#include "component/registration.h"

#include "component/class_list.h"
#include "hostif/error.h"

#include <k_genutil/activation.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <thread>

#include <sys/file.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;
using k_genutil::guidText;

[[noreturn]] void refuse(int number, const std::string& path, const std::string& rule) {
    throw Error(number, "registry " + path + ": " + rule);
}

[[noreturn]] void refuseWithReason(const std::string& path, const std::string& rule) {
    const int reason = errno;
    refuse(reason == EACCES || reason == EPERM ? errors::PermissionDenied : errors::PathAccess, path,
        rule + ": " + std::generic_category().message(reason));
}

class File {
public:
    explicit File(int descriptor) : descriptor_(descriptor) {}
    File(const File&) = delete;
    ~File() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    int get() const { return descriptor_; }

private:
    int descriptor_;
};

// One writer at a time; another one is waited for, but not for ever.
class Lock {
public:
    explicit Lock(const std::string& path)
        : file_(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644)) {
        if (file_.get() < 0)
            refuseWithReason(path, "its lock file must be writable");
        for (int attempt = 0; ::flock(file_.get(), LOCK_EX | LOCK_NB) != 0; ++attempt) {
            if (attempt == 100)
                refuse(errors::PermissionDenied, path, "another program has kept it locked for five seconds");
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }

private:
    File file_;
};

// Where the text really is: a registry that is a link stays one.
std::string realPath(const std::string& path) {
    std::error_code failure;
    const fs::path real = fs::canonical(path, failure);
    return failure ? path : real.string();
}

void writeAll(int file, std::string_view text, const std::string& path) {
    while (!text.empty()) {
        const ssize_t count = ::write(file, text.data(), text.size());
        if (count < 0 && errno != EINTR)
            refuseWithReason(path, "it must be writable");
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void replaceFile(const std::string& path, const std::string& text) {
    std::string temporary = path + ".XXXXXX";
    const File file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (file.get() < 0)
        refuseWithReason(path, "its folder must be writable");
    try {
        struct stat earlier {};
        const mode_t mode = ::stat(path.c_str(), &earlier) == 0 ? earlier.st_mode & 07777 : 0644;
        writeAll(file.get(), text, path);
        if (::fchmod(file.get(), mode) != 0 || ::fsync(file.get()) != 0 ||
            ::rename(temporary.c_str(), path.c_str()) != 0)
            refuseWithReason(path, "it must be replaceable");
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
    const File folder(::open(fs::path(path).parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() >= 0)
        ::fsync(folder.get()); // the new name outlives a power cut where the file system can promise it
}

std::string typeLibraryHeader() {
    return "typelib " + guidText(k_genutil::typeLibraryId) + " " +
           std::to_string(k_genutil::typeLibraryMajor) + "." + std::to_string(k_genutil::typeLibraryMinor);
}

bool isOwn(const k_genutil::RegistrySection& section) {
    const auto is = [&](const std::string& header) { return k_genutil::sameName(section.header, header); };
    return is(typeLibraryHeader()) || std::ranges::any_of(publicClasses, [&](const PublicClass& c) {
        return is("class " + guidText(c.name.clsid)) || is(std::string("progid ") + c.name.progId);
    });
}

// The text without the component's entries. Comments in them are kept: they may belong to the entry that
// follows.
std::string foreignText(const std::string& text) {
    std::string kept;
    for (const auto& section : k_genutil::parseRegistry(text)) {
        if (!isOwn(section)) {
            kept += section.text;
            continue;
        }
        for (std::string_view rest = section.text; !rest.empty();) {
            const std::string_view line = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
            if (const auto content = k_genutil::detail::trimmed(line);
                content.starts_with(';') || content.starts_with('#'))
                kept += line;
            rest.remove_prefix(line.size());
        }
    }
    return kept;
}

std::string ownText(const std::string& library) {
    const std::string typeLibrary = guidText(k_genutil::typeLibraryId);
    std::string text;
    for (const PublicClass& c : publicClasses) {
        const std::string progId = c.name.progId;
        const std::string clsid = guidText(c.name.clsid);
        text += "[class " + clsid + "]\nname=" + progId.substr(progId.find('.') + 1) + "\nprogid=" + progId +
                "\nserver=" + library + "\ntypelib=" + typeLibrary + "\nthreading=Apartment\n\n";
        text += "[progid " + progId + "]\nclass=" + clsid + "\n\n";
    }
    text += "[" + typeLibraryHeader() +
            "]\nname=k_genutil\nhelpstring=Kestal general utilities\nhelpfile=Kestal.chm\nserver=" + library +
            "\n\n";
    return text;
}

template<class Change>
void changeRegistry(Change change) {
    try {
        const std::string path = realPath(k_genutil::registryPath());
        if (const fs::path folder = fs::path(path).parent_path(); !folder.empty())
            fs::create_directories(folder);
        const Lock lock(path);
        const std::string before = k_genutil::readRegistry(path);
        const std::string after = change(before);
        if (after != before)
            replaceFile(path, after);
    } catch (const k_genutil::ActivationError& error) {
        throw Error(errors::PathAccess, error.what());
    }
}

} // namespace

void registerServer(const std::string& library) {
    std::string fault = k_genutil::libraryFault(library);
    if (library.find_first_of(std::string("\r\n\0", 3)) != library.npos ||
        k_genutil::detail::trimmed(library) != library)
        fault = "the library path must not contain line breaks nor begin or end with a blank";
    if (!fault.empty())
        throw Error(errors::PathAccess, "The library " + library + " cannot be registered: " + fault);
    changeRegistry([&](const std::string& before) {
        std::string text = foreignText(before);
        if (!text.empty() && !text.ends_with('\n'))
            text += '\n';
        return text + ownText(library);
    });
}

void unregisterServer() {
    changeRegistry(foreignText);
}

} // namespace genutil
