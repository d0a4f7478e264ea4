#pragma once

#include "host/commands.h"
#include "host/services.h"

namespace kestal {

class ComponentAccess;

/// Prints a report into a PDF file. Returns the exit code.
int runPrint(const CommandLine& line, const HostPtr& host, ComponentAccess& component);

} // namespace kestal
