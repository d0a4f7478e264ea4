#pragma once

#include <string>

namespace genutil {

// Throws the Error for the system's last error number: "Cannot open 'path': Permission denied".
[[noreturn]] void fail(const std::string& step, const std::string& path);

// Throws PathAccess: "'path' is not opened: only regular files are".
[[noreturn]] void refuse(const std::string& path, const std::string& isNot, const std::string& rule);

// Throws BadFileName for a name that is empty or holds a zero byte: the system would cut it there, and it
// might name another file.
void checkName(const std::string& path);

} // namespace genutil
