#include "host/settings_file.h"

#include "host/automation_object.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

namespace kestal {
namespace {

constexpr auto longestWait = std::chrono::seconds(3);
constexpr auto pause = std::chrono::milliseconds(5);
constexpr std::size_t largestFile = 16 << 20; // bytes; a file beyond is no settings file

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    // Some file systems tell only here that they are full.
    bool close() { return ::close(std::exchange(number_, -1)) == 0; }

private:
    int number_;
};

[[noreturn]] void refuse(const std::string& file, const char* act, const std::string& rule) {
    throw AutomationError(
        errors::PathAccess, "The settings file " + file + " cannot be " + act + ": " + rule);
}

std::string systemReason() {
    return std::strerror(errno);
}

std::string folderOf(const std::string& file) {
    return file.substr(0, std::max<std::size_t>(file.rfind('/'), 1));
}

// Nothing where the file does not exist.
std::optional<std::string> contentsOf(const std::string& file, const char* act) {
    // Opening must not wait for the other end of a pipe.
    const Descriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!opened.isOpen() && (errno == ENOENT || errno == ENOTDIR))
        return std::nullopt;
    struct stat status {};
    if (!opened.isOpen() || ::fstat(opened.number(), &status) != 0)
        refuse(file, act, systemReason());
    if (!S_ISREG(status.st_mode))
        refuse(file, act, "it must be an ordinary file");
    std::string bytes;
    std::array<char, 1 << 16> block{};
    for (;;) {
        const auto count = ::read(opened.number(), block.data(), block.size());
        if (count < 0)
            refuse(file, act, systemReason());
        if (count == 0)
            return bytes;
        bytes.append(block.data(), static_cast<std::size_t>(count));
        if (bytes.size() > largestFile)
            refuse(file, act, "it must not be larger than " + std::to_string(largestFile >> 20) + " MB");
    }
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return true;
}

// The name in the folder outlives a failure of power.
void syncFolder(const std::string& folder) {
    const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen())
        ::fsync(opened.number()); // not every file system can
}

} // namespace

std::string realSettingsFile(const std::string& file) {
    constexpr int mostLinks = 40;
    // A relative name would depend on where the program was started.
    if (!file.starts_with('/'))
        throw AutomationError(
            errors::InvalidCall, "a settings file must be given with its full path, not '" + file + "'");
    QFileInfo info(QString::fromStdString(file));
    for (int links = 0; info.isSymLink(); ++links) {
        if (links == mostLinks)
            refuse(file, "used", "its symbolic links form a loop");
        info = QFileInfo(info.symLinkTarget());
    }
    return info.absoluteFilePath().toStdString();
}

std::string workingCopyOf(const std::string& realFile) {
    return realFile + ".work";
}

IniText loadSettings(const std::string& file) {
    return IniText(contentsOf(realSettingsFile(file), "read").value_or(""));
}

std::string readSetting(const std::string& file, const std::string& section, const std::string& key,
    const std::string& fallback) {
    if (section.empty() || key.empty())
        throw AutomationError(errors::InvalidCall, "a setting must have a section and a key");
    return loadSettings(file).value(section, key).value_or(fallback);
}

void storeSettings(const std::string& file, std::span<const Setting> settings) {
    SettingsChange change(file);
    IniText contents = change.settings();
    bool isChanged = false;
    for (const auto& [section, key, value] : settings) {
        if (section.empty() || key.empty())
            throw AutomationError(errors::InvalidCall, "a setting must have a section and a key");
        isChanged = contents.set(section, key, value) || isChanged;
    }
    if (!isChanged)
        return;
    change.write(contents);
    change.commit();
}

void writeSetting(
    const std::string& file, const std::string& section, const std::string& key, const std::string& value) {
    storeSettings(file, std::array{Setting{section, key, value}});
}

SettingsChange::SettingsChange(const std::string& file)
    : file_(realSettingsFile(file)), copy_(workingCopyOf(file_)) {
    if (!QDir().mkpath(QString::fromStdString(folderOf(file_))))
        refuse(file_, "written", "its folder does not exist and cannot be made");
    lock();
    try {
        settings_ = IniText(contentsOf(file_, "written").value_or(""));
        requireChangeable();
    } catch (...) {
        ::close(lock_);
        throw;
    }
}

SettingsChange::~SettingsChange() {
    if (!isCommitted_)
        ::unlink(copy_.c_str());
    ::close(lock_);
}

// The system gives the lock back when its holder ends, however that happens. The file of the lock stays: to
// take it away would let two writers hold a lock each.
void SettingsChange::lock() {
    const std::string path = file_ + ".lock";
    lock_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
    if (lock_ < 0)
        refuse(file_, "written", "its lock " + path + " cannot be made: " + systemReason());
    const auto begin = std::chrono::steady_clock::now();
    while (::flock(lock_, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        const bool isHeld = error == EWOULDBLOCK;
        if (error != EINTR && !(isHeld && std::chrono::steady_clock::now() - begin < longestWait)) {
            ::close(lock_);
            refuse(file_, "written",
                isHeld ? "another program is writing it and holds " + path
                       : "its lock " + path + ": " + std::strerror(error));
        }
        std::this_thread::sleep_for(pause);
    }
}

void SettingsChange::requireChangeable() const {
    // The file is replaced, which the folder alone decides on; a file that may not be written is meant to
    // stay.
    if (::faccessat(AT_FDCWD, file_.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT)
        refuse(file_, "written", errno == EACCES ? "it is read-only for this user" : systemReason());
    if (!settings_.fault().empty())
        refuse(file_, "written", settings_.fault());
}

void SettingsChange::write(const IniText& contents) {
    constexpr mode_t usualMode = 0666; // less what the user's mask takes
    const auto failed = [this](const std::string& reason) {
        ::unlink(copy_.c_str());
        refuse(file_, "written", "its working copy " + copy_ + ": " + reason);
    };
    if (::unlink(copy_.c_str()) != 0 && errno != ENOENT)
        refuse(file_, "written",
            "its working copy " + copy_ + " of earlier cannot be removed: " + systemReason());
    Descriptor copy(::open(copy_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualMode));
    if (!copy.isOpen())
        failed(systemReason());
    struct stat status {};
    if (::stat(file_.c_str(), &status) == 0) {
        // The superuser's settings stay their owner's; others keep the group where they may.
        if (::fchown(copy.number(), status.st_uid, status.st_gid) != 0 &&
            ::fchown(copy.number(), static_cast<uid_t>(-1), status.st_gid) != 0)
            errno = 0;
        if (::fchmod(copy.number(), status.st_mode & 07777) != 0)
            failed(systemReason());
    }
    if (!writeAll(copy.number(), contents.bytes()) || !copy.close())
        failed(systemReason());
}

void SettingsChange::store(std::span<const Setting> settings) {
    IniText contents = workingContents();
    for (const auto& [section, key, value] : settings)
        contents.set(section, key, value);
    write(contents);
    stored_.insert(stored_.end(), settings.begin(), settings.end());
}

IniText SettingsChange::workingContents() const {
    const auto bytes = contentsOf(copy_, "read");
    if (!bytes)
        refuse(file_, "written", "its working copy " + copy_ + " is missing");
    IniText contents(*bytes);
    if (!contents.fault().empty())
        refuse(file_, "written", "its working copy " + copy_ + " is damaged: " + contents.fault());
    return contents;
}

void SettingsChange::commit() {
    workingContents();
    // What the file becomes stands on the disk before it does.
    const Descriptor copy(::open(copy_.c_str(), O_RDWR | O_CLOEXEC));
    if (!copy.isOpen() || ::fsync(copy.number()) != 0)
        refuse(file_, "written", "its working copy " + copy_ + ": " + systemReason());
    if (::rename(copy_.c_str(), file_.c_str()) != 0)
        refuse(file_, "written", systemReason());
    isCommitted_ = true;
    syncFolder(folderOf(file_));
}

} // namespace kestal
