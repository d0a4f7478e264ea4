#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace genutil {

// What the system says of a file. A file whose state is the same was not written to meanwhile, as far as the
// clock of its file system tells moments apart. Times are nanoseconds since 1970.
struct FileState {
    std::uint64_t size = 0;
    std::uint64_t number = 0; // of the file in its file system: another one replaced by a rename has another
    std::int64_t written = 0;
    std::int64_t changed = 0; // of its content, name, rights or times: nobody sets it back

    friend bool operator==(const FileState&, const FileState&) = default;
};

// Nothing when there is no such regular file.
std::optional<FileState> fileState(const std::string& path);

// Whether the state was looked at so long after the last change that any later one shows.
bool isSettled(const FileState& state, std::int64_t lookedAt);

std::int64_t now();

} // namespace genutil
