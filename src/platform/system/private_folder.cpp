#include "platform/system/private_folder.h"

#include "hostif/error.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

// An absolute folder named by the environment, else "".
fs::path environmentFolder(const char* variable) {
    const char* value = std::getenv(variable);
    const fs::path folder = value ? value : "";
    return folder.is_absolute() ? folder : fs::path();
}

bool makeFolders(const fs::path& folder) {
    std::error_code refused;
    fs::create_directories(folder.parent_path(), refused);
    ::mkdir(folder.c_str(), S_IRWXU);
    return isPrivate(folder);
}

// The product's folder among those of the user for things of one kind; "" without a home.
fs::path userFolder(const char* variable, const char* belowHome) {
    fs::path folder = environmentFolder(variable);
    if (const fs::path home = environmentFolder("HOME"); folder.empty() && !home.empty())
        folder = home / belowHome;
    return folder.empty() ? folder : folder / "k_genutil";
}

} // namespace

std::vector<std::string> privateFolders() {
    std::vector<std::string> folders;
    if (const fs::path state = userFolder("XDG_STATE_HOME", ".local/state"); !state.empty())
        folders.push_back(state / "before-save");
    fs::path temporary = environmentFolder("TMPDIR");
    if (temporary.empty())
        temporary = "/tmp";
    folders.push_back(temporary / ("k_genutil-" + std::to_string(::geteuid())));
    return folders;
}

bool isPrivate(const std::string& folder) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string makePrivateFolder() {
    const std::vector<std::string> folders = privateFolders();
    const auto made = std::ranges::find_if(folders, makeFolders);
    if (made == folders.end())
        throw Error(
            errors::PathAccess, "No folder for the safety copies of saved files can be made: neither '" +
                                    folders.front() + "' nor '" + folders.back() + "'");
    return *made;
}

std::string makeCacheFolder() {
    const fs::path folder = userFolder("XDG_CACHE_HOME", ".cache");
    if (folder.empty() || !makeFolders(folder))
        throw Error(
            errors::PathAccess, "No folder for what was read of jobs can be made: '" + folder.string() + "'");
    return folder;
}

} // namespace genutil
