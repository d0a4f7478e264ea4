#pragma once

#include "platform/system/regular_file.h"

namespace genutil {

// Gives a file the owner and the group of another. False when the system refuses.
bool giveOwner(const struct stat& from, int to);

// Gives a file the permissions, access list and extended attributes of another. False when the system refuses
// one that users set themselves.
bool giveAttributes(const RegularFile& from, int to);

} // namespace genutil
