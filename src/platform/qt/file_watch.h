#pragma once

#include "hostif/desktop.h"

#include <functional>
#include <memory>
#include <string>

namespace genutil {

// Watches the file of this name and its folder, so that a file that is replaced, removed or made again is
// seen as well as one that is written to. What happens within a fifth of a second is one call.
std::unique_ptr<FileWatch> makeFileWatch(const std::string& path, std::function<void()> changed);

} // namespace genutil
