#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace genutil {

// A regular file, open for reading, that may be a database.
class DatabaseFile {
public:
    static constexpr std::size_t headSize = 80;

    // Never waits for the other end of a pipe and never acts on a device. Throws as
    // DatabaseEngine::OpenDatabase.
    explicit DatabaseFile(const std::string& path);
    ~DatabaseFile();
    DatabaseFile(DatabaseFile&& other) noexcept;
    DatabaseFile& operator=(DatabaseFile&&) = delete;

    const std::string& path() const { return path_; }
    std::uint64_t size() const { return size_; }
    const std::string& head() const { return head_; } // the first bytes, at most headSize
    // Fills `bytes` from the place in the file; false when it does not have that many there, or not any more.
    bool readAt(std::uint64_t place, std::span<char> bytes) const;

private:
    std::string path_;
    int number_ = -1;
    std::uint64_t size_ = 0;
    std::string head_;
};

// Throws UnrecognisedDatabase: "'path' is not a job database: why".
[[noreturn]] void notADatabase(const std::string& path, const std::string& why);

} // namespace genutil
