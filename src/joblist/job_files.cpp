#include "joblist/job_files.h"

#include "hostif/error.h"
#include "joblist/job_names.h"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>

namespace genutil {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 2> jobExtensions{".GDB", ".MDB"};

fs::path toPath(const std::string& utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string toUtf8(const fs::path& path) {
    const std::u8string utf8 = path.u8string();
    return std::string(utf8.begin(), utf8.end());
}

[[noreturn]] void throwCannotList(const std::string& folder, std::error_code reason) {
    const Error cause = toError(std::make_exception_ptr(std::system_error(reason)));
    throw Error(cause.number(), "Cannot list the folder '" + folder + "': " + reason.message());
}

std::vector<std::string> visibleFiles(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : toPath(folder), failure);
    if (failure == std::errc::no_such_file_or_directory || failure == std::errc::not_a_directory)
        return names;
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
        const std::string name = toUtf8(entry->path().filename());
        std::error_code vanished;
        if (!name.starts_with('.') && entry->is_regular_file(vanished))
            names.push_back(name);
    }
    if (failure)
        throwCannotList(folder, failure);
    std::ranges::sort(names);
    return names;
}

} // namespace

std::vector<std::string> listJobFiles(const std::string& jobPath) {
    std::vector<std::string> jobs;
    if (toPath(jobPath).has_filename())
        return jobs;
    const std::vector<std::string> names = visibleFiles(jobPath);
    for (const std::string_view extension : jobExtensions)
        std::ranges::copy_if(names, std::back_inserter(jobs),
            [&](const std::string& name) { return upperCase(name).ends_with(extension); });
    return jobs;
}

bool isReservedFile(const std::string& file, const std::string& jobPath, const std::string& programFolder) {
    const std::string name = upperCase(file);
    return name == "INSTHELP.GDB" || (name == "DEFINITIONS.GDB" && jobPath == programFolder);
}

} // namespace genutil
