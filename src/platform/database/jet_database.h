#pragma once

#include "hostif/database.h"
#include "platform/database/database_file.h"

#include <memory>

namespace genutil {

// The user's tables in the order of the catalogue. Throws Error UnrecognisedDatabase for a file that is not
// Jet's, and for a catalogue that cannot be read.
std::shared_ptr<Database> openJetDatabase(DatabaseFile file);

} // namespace genutil
