#pragma once

#include "host/commands.h"
#include "host/services.h"

namespace kestal {

class ComponentAccess;

// The commands that show the dialogs of what the user prefers. Each returns the exit code.

int runPreferences(const CommandLine& line, const HostPtr& host, ComponentAccess& component);
/// What the plot of a job shows. The marks are kept in the settings.
int runDisplay(const CommandLine& line, const HostPtr& host, ComponentAccess& component);
/// The history of the product.
int runHistory(const CommandLine& line, const HostPtr& host, ComponentAccess& component);

} // namespace kestal
