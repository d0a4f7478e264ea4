#pragma once

#include "host/commands.h"
#include "host/services.h"

namespace kestal {

class ComponentAccess;

// The commands that deal with the least-squares options. Each returns the exit code.

/// Shows the options: the user's preferences, or those of a job.
int runLsOptions(const CommandLine& line, const HostPtr& host, ComponentAccess& component);
/// Writes the options with their units to the standard output stream.
int dumpLsOptions(const CommandLine& line, const HostPtr& host);
/// Shows what is done with the points of an adjusted network: the preference, or that of a job.
int runPointSave(const CommandLine& line, const HostPtr& host, ComponentAccess& component);

} // namespace kestal
