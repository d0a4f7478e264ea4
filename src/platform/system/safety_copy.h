#pragma once

#include "platform/system/regular_file.h"
#include "platform/system/temporary_file.h"

#include <string>

namespace genutil {

// The bytes that a file had before it is written in place, stored in the user's private folder until the new
// ones are stored. The name of the copy tells the file's name and, for undoing, which file on which disk it
// is; a copy has that name only when all of it is on the disk.
class SafetyCopy {
public:
    // Throws Error; the file has then not been touched.
    explicit SafetyCopy(const RegularFile& original);

    const std::string& path() const { return path_; }
    // Tells the copy that the original has just been written to: what others write later is not undone.
    void noteProgress(const RegularFile& original);
    // Gives the original the old bytes back and stores them.
    void putBack(const RegularFile& original);
    // The save has ended well, or has been undone.
    void remove();

private:
    TemporaryFile copy_;
    std::string path_;
};

// A temporary file in the private folder. Throws Error.
TemporaryFile makePrivateFile();

// Gives a file that was being written in place when its process ended its old bytes back, and clears what
// else ended processes left in the private folder. Does nothing for a file that others have written to since.
// Throws Error naming the safety copy when the bytes cannot be put back; the copy stays.
void undoInterruptedSave(const std::string& path);

} // namespace genutil
