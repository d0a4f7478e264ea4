#pragma once

#include "hostif/desktop.h"

#include <memory>

namespace genutil {

// The file operations of this system.
std::unique_ptr<FileSystem> makeSystemFiles();

} // namespace genutil
