#pragma once

#include "platform/system/regular_file.h"
#include "platform/system/temporary_file.h"

namespace genutil {

// Gives the target, which stays the same file, the bytes of `source`. Should anything fail, the target gets
// its old bytes back, and the error passes through; should that fail too, the error says where the old bytes
// are kept.
void rewriteInPlace(const RegularFile& target, const TemporaryFile& source);

} // namespace genutil
