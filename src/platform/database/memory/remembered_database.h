#pragma once

#include "hostif/database.h"
#include "platform/database/memory/facts.h"

#include <functional>
#include <memory>

namespace genutil::memory {

using OpenAgain = std::function<std::shared_ptr<Database>()>;

// Answers as the database in which the facts were found. What they do not tell is asked of the database
// itself, which is opened for it.
std::shared_ptr<Database> makeRememberedDatabase(Facts facts, OpenAgain openAgain);

// Called once, when the database and its recordsets have gone.
using KeepFacts = std::function<void(Facts facts)>;

// The database, with what is asked of it written down. Nothing is kept of one that has failed to answer.
std::shared_ptr<Database> makeWatchedDatabase(
    std::shared_ptr<Database> database, bool mayHaveLog, KeepFacts keep);

} // namespace genutil::memory
