#pragma once

#include "platform/system/descriptor.h"

#include <string>
#include <utility>

#include <sys/types.h>

namespace genutil {

// How the names of temporary files are made: prefix, eight random letters and digits, suffix.
struct NamePattern {
    std::string folder;
    std::string prefix;
    std::string suffix;
    bool matches(const std::string& name) const;
};

// A file of a new name that goes when this goes. It is locked as long as it is open, so that a file without a
// lock is one whose process has ended.
class TemporaryFile {
public:
    TemporaryFile() = default;
    // Not open, with the system's error number set, when it cannot be made.
    TemporaryFile(const NamePattern& pattern, mode_t mode);
    // One that an ended process has left, open and locked.
    TemporaryFile(Descriptor left, std::string path) : file_(std::move(left)), path_(std::move(path)) {}
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&& other) noexcept;
    ~TemporaryFile();

    bool isOpen() const { return file_.isOpen(); }
    int number() const { return file_.number(); }
    const std::string& path() const { return path_; }
    // Gives the file a lasting name, also one that another file had. False, with the system's error number
    // set, when the system refuses.
    bool renameTo(const std::string& path);

private:
    Descriptor file_;
    std::string path_; // empty once the name is a lasting one
};

// Locks an open file without waiting; false also where the file system has no locks.
bool lockNow(int file);

// Removes the files of these names whose process has ended.
void removeLeftovers(const NamePattern& pattern);

// The longest front of a name, cut between two characters, that leaves room for `others` bytes more in this
// folder.
std::string cutName(const std::string& name, const std::string& folder, std::size_t others);

} // namespace genutil
