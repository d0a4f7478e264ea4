#pragma once

#include "hostif/database.h"

#include <memory>

namespace genutil {

// Opens job databases by what their first bytes say, whatever their name:
//  - Jet files of format 3 and 4 are read and never written; `exclusive` and `readOnly` make no difference to
//    them;
//  - SQLite files are read and, unless opened read only, written.
// OpenDatabase throws Error: FileNotFound, PathNotFound, PermissionDenied; UnrecognisedDatabase for anything
// but a database, a folder or a pipe included, and for a damaged one; DatabaseLocked.
std::unique_ptr<DatabaseEngine> makeDatabaseEngine();

struct OpenedDatabase {
    std::shared_ptr<Database> database;
    bool mayHaveLog = false; // its writers keep their latest changes in a log beside it
};
// As OpenDatabase does it, shared and read only.
OpenedDatabase openToReadDatabase(const std::string& path);

} // namespace genutil
