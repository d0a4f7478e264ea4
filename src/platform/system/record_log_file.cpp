#include "platform/system/record_log_file.h"

#include "hostif/error.h"
#include "platform/system/block_io.h"
#include "platform/system/descriptor.h"
#include "platform/system/failures.h"
#include "platform/system/private_folder.h"
#include "platform/system/temporary_file.h"
#include "text/little_endian.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// A log begins with this line; each record follows its length and its check, four bytes each. The first one
// is the path of the file that the log is about.
constexpr std::string_view firstLine = "k_genutil records 1\n";
constexpr std::size_t headSize = 8;
constexpr mode_t ownMode = 0600;

// What is written is put on the disk as often as this, so that a power cut costs no more than that.
constexpr std::chrono::seconds storingPause{2};

NamePattern logsIn(const std::string& folder) {
    return {folder, "records-", ".log"};
}

// FNV-1a; a cut-off or torn record is all that it has to find.
std::uint32_t checkOf(std::string_view bytes) {
    std::uint32_t check = 2166136261u;
    for (const char c : bytes)
        check = (check ^ static_cast<unsigned char>(c)) * 16777619u;
    return check;
}

std::string framed(std::string_view record) {
    std::string bytes;
    bytes.reserve(headSize + record.size());
    text::appendNumber(bytes, std::uint32_t(record.size()));
    text::appendNumber(bytes, checkOf(record));
    return bytes += record;
}

// One path for a file, whichever way it is named.
std::string fullPath(const std::string& path) {
    std::error_code unreadable;
    const fs::path full = fs::weakly_canonical(path, unreadable);
    return unreadable ? path : full.string();
}

class LogFile : public RecordLog {
public:
    LogFile(TemporaryFile file, off_t end) : file_(std::move(file)), end_(end) {}

    void append(std::string_view record) override {
        if (record.size() > std::numeric_limits<std::uint32_t>::max())
            throw Error(errors::OutOfMemory,
                "A change of " + std::to_string(record.size()) + " bytes is too large to be kept");
        put(framed(record));
        if (const auto now = Clock::now(); now - stored_ >= storingPause) {
            stored_ = now;
            store(file_.number(), file_.path());
        }
    }
    void put(std::string_view bytes) {
        writeBlockAt(file_.number(), end_, bytes, file_.path());
        end_ += off_t(bytes.size());
    }

private:
    TemporaryFile file_;
    off_t end_;
    Clock::time_point stored_;
};

// Where the logs of ended and of running processes are, those last written to first.
std::vector<fs::path> logs() {
    std::vector<std::pair<fs::file_time_type, fs::path>> found;
    for (const std::string& folder : privateFolders()) {
        if (!isPrivate(folder))
            continue;
        std::error_code unreadable;
        for (fs::directory_iterator entry(folder, unreadable), end; !unreadable && entry != end;
             entry.increment(unreadable)) {
            std::error_code gone;
            if (const auto written = entry->last_write_time(gone);
                !gone && logsIn(folder).matches(entry->path().filename()))
                found.emplace_back(written, entry->path());
        }
    }
    std::ranges::sort(found, std::greater());
    std::vector<fs::path> paths;
    for (auto& [written, path] : found)
        paths.push_back(std::move(path));
    return paths;
}

// Nothing when the file is in use, or about another file.
std::optional<LeftLog> openLeft(const std::string& path, const std::string& about) {
    Descriptor file(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || !lockNow(file.number()) || ::fstat(file.number(), &status) != 0 ||
        !S_ISREG(status.st_mode) || status.st_uid != ::geteuid() || status.st_nlink == 0)
        return std::nullopt;
    std::string bytes;
    forEachBlock(file.number(), path, [&](off_t, std::string_view block) { bytes += block; });
    LeftLog left{recordsOf(bytes), nullptr};
    if (left.records.empty() || left.records.front() != about)
        return std::nullopt;
    auto end = off_t(firstLine.size());
    for (const std::string& record : left.records)
        end += off_t(headSize + record.size());
    if (::ftruncate(file.number(), end) != 0)
        return std::nullopt; // what goes on there could not be read
    left.records.erase(left.records.begin());
    left.log = std::make_unique<LogFile>(TemporaryFile(std::move(file), path), end);
    return left;
}

} // namespace

std::vector<std::string> recordsOf(std::string_view bytes) {
    std::vector<std::string> records;
    if (!bytes.starts_with(firstLine))
        return records;
    bytes.remove_prefix(firstLine.size());
    while (bytes.size() >= headSize) {
        const auto length = text::numberAt<std::uint32_t>(bytes, 0);
        const auto check = text::numberAt<std::uint32_t>(bytes, 4);
        bytes.remove_prefix(headSize);
        if (length > bytes.size() || check != checkOf(bytes.substr(0, length)))
            break;
        records.emplace_back(bytes.substr(0, length));
        bytes.remove_prefix(length);
    }
    return records;
}

std::unique_ptr<RecordLog> makeRecordLog(const std::string& about) {
    const std::string folder = makePrivateFolder();
    TemporaryFile file(logsIn(folder), ownMode);
    if (!file.isOpen())
        fail("Cannot make a file in", folder);
    auto log = std::make_unique<LogFile>(std::move(file), 0);
    log->put(std::string(firstLine) + framed(fullPath(about)));
    storeNames(folder);
    return log;
}

std::optional<LeftLog> leftRecordLog(const std::string& about) {
    for (const fs::path& path : logs())
        if (auto left = openLeft(path, fullPath(about)))
            return left;
    return std::nullopt;
}

} // namespace genutil
