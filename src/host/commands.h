#pragma once

#include <map>
#include <string>
#include <vector>

namespace kestal {

inline constexpr const char* versionText = "8.2";

/// Exit codes of the program.
namespace exit_codes {
inline constexpr int Success = 0;
inline constexpr int Failure = 1; ///< a reason stands on the standard error stream
inline constexpr int Usage = 2;   ///< the command line is wrong; nothing was done
inline constexpr int Partial =
    3; ///< done, but for job files that could not be read; they are named there, too
} // namespace exit_codes

struct Command;

/// A command line as it was understood.
struct CommandLine {
    const Command* command = nullptr; ///< null when there is nothing to run
    std::string file;
    std::map<std::string, std::string> options; ///< by name with the dashes; a switch has the value ""

    int exitCode = exit_codes::Success; ///< where there is nothing to run
    std::string message;                ///< the help, the version or what is wrong

    bool has(const std::string& option) const { return options.contains(option); }
    /// Whether an option is given that lets the command show nothing.
    bool showsNothing() const;
    /// An option that takes a number; the parser has checked it.
    int number(const std::string& option, int absent) const;
};

/// `arguments` without the program's name. Touches nothing but its arguments.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// Runs the program: parses, makes the application object, loads the component. The result is the exit code.
int runProgram(int argc, char** argv);

} // namespace kestal
