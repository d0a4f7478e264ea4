#pragma once

#include "hostif/value.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The text rules behind the host's string service. Texts are UTF-8. What a rule refuses is an
// AutomationError.
namespace kestal {

/// The text before the first separator; `text` keeps what follows it, "" when no separator is left. An empty
/// separator takes the whole text.
std::string nextField(std::string& text, const std::string& separator);

/// A number in a format of #, 0, a comma between digits (thousands) and a decimal point: "0.000", "#######0",
/// "#,##0.00". Rounds by the decimal digits that 15 places show, halves away from zero; a value that rounds
/// to nothing has no sign. Text before and after the digits of the format is kept. The number is written with
/// the separators of `locale`.
std::string formatNumber(double value, const std::string& format, const genutil::NumberLocale& locale = {});

/// Decimal degrees as dd°mm'ss", seconds rounded. `kind` "LATITUDE" adds N or S, "LONGITUDE" E or W; any
/// other kind leads with a minus sign. `decimals`: 0 to 6 places of the seconds.
std::string angleText(const std::string& degrees, int decimals, const std::string& kind);

/// Doubles every "&", so that a caption shows it.
std::string captionText(const std::string& text);

/// Code 0 leaves the value alone; -1 to -12 round it to so many decimals.
double transformValue(double value, int code);

/// The command line that opens `file` in the editor. The setting is a program, perhaps with switches; a
/// program path with blanks is put in double quotes, or stands before the character 127 with the switches
/// after it. The file is always one argument, never a switch.
std::string editorCommand(const std::string& editor, const std::string& file);

/// An argument in the double quotes that splitCommandLine undoes.
std::string quotedArgument(const std::string& argument);
/// Blanks separate arguments, except between double quotes; there \" is a quote and \\ a backslash. Nothing
/// else is special: no variable, pattern or command is expanded. InvalidCall for a missing closing quote.
std::vector<std::string> splitCommandLine(const std::string& commandLine);

/// The parts of a path: drive ("C:" or ""), folder with its trailing separator, file name.
struct PathParts {
    std::string drive;
    std::string folder;
    std::string file;
};
PathParts splitPath(const std::string& path);

/// A path for a place with little room: whole folders in the middle give way to "...", first those next to
/// the file name. "" where not even ".../name" fits.
std::string shortenedPath(const std::string& path, const std::function<bool(const std::string&)>& fits);

/// Takes the extension, its dot included, off the file name and returns it. A dot that leads the name starts
/// no extension.
std::string splitExtension(std::string& name);

} // namespace kestal
