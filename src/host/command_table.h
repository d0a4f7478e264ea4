#pragma once

#include "host/commands.h"

#include <memory>
#include <vector>

namespace kestal {

class ComponentAccess;
class Host;

struct CommandOption {
    const char* name;      ///< with its dashes
    const char* valueName; ///< "" for a switch
    const char* summary;
    int least = 0; ///< the range of a number; least > most: any text
    int most = -1;
    bool isRequired = false;
};

struct Command {
    const char* name;     ///< "" is what runs without a command
    const char* fileName; ///< of the one argument that must be given, or ""
    const char* summary;
    std::vector<CommandOption> options;
    /// Returns the exit code.
    int (*run)(const CommandLine& line, const std::shared_ptr<Host>& host, ComponentAccess& component);
    bool needsUser = true; ///< false: runs without a screen too
};

const std::vector<Command>& commandTable();

} // namespace kestal
