#pragma once

#include "hostif/desktop.h"

#include <memory>
#include <string>
#include <string_view>

namespace genutil {

// See FileSystem::makeScratchFile().
std::unique_ptr<ScratchFile> makeScratchFile(const std::string& name, std::string_view bytes);

} // namespace genutil
