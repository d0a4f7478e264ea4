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
    bool showsNothing = false; ///< with it the command needs no screen, and runs alone
};

/// What a command needs of a screen. Only where it is needed somebody is taken to sit at it.
enum class Screen {
    Needed,
    Usable, ///< shows windows where there is one, draws them unseen where there is none
    Unused  ///< shows nothing, even where there is one
};

struct Command {
    const char* name;     ///< "" is what runs without a command
    const char* fileName; ///< of the one argument that must be given, or ""
    const char* summary;
    std::vector<CommandOption> options;
    /// Returns the exit code.
    int (*run)(const CommandLine& line, const std::shared_ptr<Host>& host, ComponentAccess& component);
    Screen screen = Screen::Needed;
    /// What runs instead of `run`, or of none, where the component has no part in it.
    int (*runAlone)(const CommandLine& line, const std::shared_ptr<Host>& host) = nullptr;

    bool needsUser() const { return screen == Screen::Needed; }
};

const std::vector<Command>& commandTable();

} // namespace kestal
