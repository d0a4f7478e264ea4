#pragma once

#include "text/byte_stream.h"

#include <memory>
#include <string>

namespace genutil {

// FileSystem::openFile: a regular file for reading from its start to the end that reading meets, even where
// the file grows, shrinks or tells no size. A save that was interrupted is undone first.
std::unique_ptr<text::ByteSource> openFile(const std::string& path);

} // namespace genutil
