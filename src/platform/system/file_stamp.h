#pragma once

#include "hostif/desktop.h"

#include <optional>
#include <string>

namespace genutil {

// FileSystem::stampOf.
std::optional<FileStamp> stampOf(const std::string& path);

} // namespace genutil
