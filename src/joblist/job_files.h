#pragma once

#include <string>
#include <vector>

namespace genutil {

// The files of a folder that may hold jobs: all .gdb files, then all .mdb files, each by name; the case of
// the extension does not matter, for jobs come from systems that have none. Regular files and links to them
// only: opening a pipe would wait for ever. Names that begin with a dot are hidden, and no jobs. The path is
// followed directly by the names, so one without a separator at its end is no folder, while the empty one is
// the current folder. A folder that is not there holds nothing; one that cannot be listed: Error naming it.
std::vector<std::string> listJobFiles(const std::string& jobPath);

// The product's own databases, which are no jobs: the instant-help texts anywhere, the definitions in the
// program's folder.
bool isReservedFile(const std::string& file, const std::string& jobPath, const std::string& programFolder);

} // namespace genutil
