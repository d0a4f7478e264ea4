#pragma once

#include <string>
#include <vector>

namespace genutil {

// The folders, existing or not, that may hold what a save keeps aside: under the user's state folder
// ($XDG_STATE_HOME, else ~/.local/state), else under the temporary one. Best first.
std::vector<std::string> privateFolders();

// Whether the folder exists and nobody but this user can put anything into it.
bool isPrivate(const std::string& folder);

// The first of them that exists or can be made. Throws PathAccess when there is none.
std::string makePrivateFolder();

// The user's folder for what can be made again ($XDG_CACHE_HOME/k_genutil, else ~/.cache/k_genutil), private
// too. Throws PathAccess when it cannot be had.
std::string makeCacheFolder();

} // namespace genutil
