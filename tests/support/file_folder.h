#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace genutil::fake {

// A folder of its own for real files, open to every user. What saves keep aside goes to a folder in it, too.
class FileFolder {
public:
    FileFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "files-XXXXXX").string();
        path = ::mkdtemp(pattern.data());
        std::filesystem::permissions(path, std::filesystem::perms::all);
        ::setenv("XDG_STATE_HOME", (path / "state").c_str(), 1);
        ::setenv("XDG_CACHE_HOME", (path / "cache").c_str(), 1);
    }
    ~FileFolder() {
        std::filesystem::remove_all(path);
        ::unsetenv("XDG_STATE_HOME");
        ::unsetenv("XDG_CACHE_HOME");
    }
    FileFolder(const FileFolder&) = delete;
    FileFolder& operator=(const FileFolder&) = delete;

    std::string operator/(const std::string& name) const { return (path / name).string(); }
    std::string make(const std::string& name, const std::string& contents = "secret") const {
        std::ofstream(path / name, std::ios::binary) << contents;
        return *this / name;
    }
    std::string contents(const std::string& name) const {
        std::ifstream file(path / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    struct stat status(const std::string& name) const {
        struct stat status {};
        ::lstat((path / name).c_str(), &status);
        return status;
    }
    // The names of all that is not a folder, also of what saves keep aside.
    std::set<std::string> names() const {
        std::set<std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
            if (entry.symlink_status().type() != std::filesystem::file_type::directory)
                all.insert(entry.path().filename());
        }
        return all;
    }

    std::filesystem::path path;
};

} // namespace genutil::fake
