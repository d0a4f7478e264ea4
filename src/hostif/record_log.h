#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace genutil {

// Records that outlive the process: each is there whole or not at all. The log is a private file of the user;
// it goes with this object, and stays when the process is killed.
class RecordLog {
public:
    virtual ~RecordLog() = default;
    // In the hands of the system when this returns, and on the disk some seconds later. Throws Error.
    virtual void append(std::string_view record) = 0;
};

// A log that a process which has ended has left. It is this process's from then on.
struct LeftLog {
    std::vector<std::string> records;
    std::unique_ptr<RecordLog> log;
};

} // namespace genutil
