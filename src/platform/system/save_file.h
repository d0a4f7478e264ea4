#pragma once

#include "text/byte_stream.h"

#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

namespace genutil {

// FileSystem::saveFile. The new bytes are first written to a temporary file. Beside the target where the
// target may be replaced: the temporary file then takes its name. Otherwise (further hard links, an owner or
// access rights that cannot be given back, a folder that cannot be written) in the user's private folder: the
// target is then written in place while a safety copy of its old bytes exists. A file that is made gets
// `newMode`, else the usual permissions.
void saveFile(const std::string& path, const std::function<void(const text::ByteSink& sink)>& write,
    std::optional<mode_t> newMode = {});

} // namespace genutil
