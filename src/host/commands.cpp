#include "host/commands.h"

#include "host/command_table.h"
#include "host/component_access.h"
#include "host/output.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace kestal {
namespace {

std::string usageOf(const Command& command) {
    std::string usage = "kestal";
    for (const std::string part : {command.name, command.fileName})
        usage += part.empty() ? "" : " " + part;
    for (const CommandOption& option : command.options) {
        const std::string value = *option.valueName ? std::string(" ") + option.valueName : "";
        usage += option.isRequired ? std::string(" ") + option.name + value
                                   : std::string(" [") + option.name + value + "]";
    }
    return usage;
}

std::string helpText() {
    std::string text = "Usage:\n";
    for (const Command& command : commandTable()) {
        text += "  " + usageOf(command) + "\n      " + command.summary + "\n";
        for (const CommandOption& option : command.options)
            text += std::string("      ") + option.name + " " + option.valueName +
                    (*option.valueName ? " " : "") + " " + option.summary + "\n";
    }
    return text + "  kestal --help | --version\n";
}

CommandLine answer(int exitCode, const std::string& message) {
    CommandLine line;
    line.exitCode = exitCode;
    line.message = message;
    return line;
}

CommandLine refusal(const std::string& rule) {
    return answer(exit_codes::Usage, "kestal: " + rule + "\nTry 'kestal --help'.");
}

bool parseNumber(const std::string& text, int& number) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && stop == text.data() + text.size();
}

// The rule that the value of an option breaks, or "".
std::string valueFault(const CommandOption& option, const std::string& value) {
    int number = 0;
    if (option.least > option.most)
        return value.empty()
                   ? std::string(option.name) + " needs a " + option.valueName + " that is not empty"
                   : "";
    if (parseNumber(value, number) && number >= option.least && number <= option.most)
        return {};
    return std::string(option.name) + " must be a whole number from " + std::to_string(option.least) +
           " to " + std::to_string(option.most) + ", not '" + value + "'";
}

} // namespace

int CommandLine::number(const std::string& option, int absent) const {
    const auto found = options.find(option);
    int value = absent;
    if (found != options.end())
        parseNumber(found->second, value);
    return value;
}

bool CommandLine::showsNothing() const {
    return std::ranges::any_of(command->options,
        [this](const CommandOption& option) { return option.showsNothing && has(option.name); });
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    if (std::ranges::find(arguments, "--help") != arguments.end())
        return answer(exit_codes::Success, helpText());
    if (std::ranges::find(arguments, "--version") != arguments.end())
        return answer(exit_codes::Success, std::string("kestal ") + versionText);

    const auto& commands = commandTable();
    const bool named = !arguments.empty() && !arguments[0].starts_with('-');
    const auto command = std::ranges::find(commands, named ? arguments[0] : "", &Command::name);
    if (command == commands.end())
        return refusal("there is no command '" + arguments[0] + "'");
    CommandLine line;
    line.command = &*command;
    bool onlyFiles = false; // after "--"
    for (std::size_t i = named ? 1 : 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (!onlyFiles && argument == "--") {
            onlyFiles = true;
        } else if (onlyFiles || !argument.starts_with('-')) {
            if (!*command->fileName || !line.file.empty() || argument.empty())
                return refusal("unexpected argument '" + argument + "'; usage: " + usageOf(*command));
            line.file = argument;
        } else {
            const auto option = std::ranges::find(command->options, argument, &CommandOption::name);
            if (option == command->options.end())
                return refusal("unknown option '" + argument + "'; usage: " + usageOf(*command));
            const bool takesValue = *option->valueName;
            if (takesValue && i + 1 == arguments.size())
                return refusal(argument + " needs a value: " + argument + " " + option->valueName);
            const std::string value = takesValue ? arguments[++i] : "";
            if (const std::string fault = takesValue ? valueFault(*option, value) : ""; !fault.empty())
                return refusal(fault);
            if (!line.options.emplace(argument, value).second)
                return refusal(argument + " must not be given twice");
        }
    }
    if (*command->fileName && line.file.empty())
        return refusal("a " + std::string(command->fileName) + " is needed; usage: " + usageOf(*command));
    for (const CommandOption& option : command->options)
        if (option.isRequired && !line.has(option.name))
            return refusal(std::string(option.name) + " is needed; usage: " + usageOf(*command));
    return line;
}

namespace {

bool hasScreen() {
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// Windows are laid out as on a screen of usual size, which is described in a file in the folder.
QByteArray platformWithoutScreen(const QTemporaryDir& folder) {
    QFile description(folder.filePath("screen.json"));
    if (!description.open(QIODevice::WriteOnly))
        return "offscreen";
    description.write(R"({"screens": [{"name": "tour", "x": 0, "y": 0, "width": 1280, "height": 1024,)"
                      R"( "logicalDpi": 96, "dpr": 1}]})");
    return "offscreen:configfile=" + QFile::encodeName(description.fileName());
}

// The platform without a screen notes each thing that only a screen can do.
void withoutPlatformNotes(QtMsgType, const QMessageLogContext&, const QString& text) {
    if (!text.startsWith("This plugin does not support"))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

// A command that shows nothing has nothing to say of the toolkit but what ends it.
void onlyFatalNotes(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

// False when a screen is needed and there is none.
bool chooseScreen(Screen screen, const QTemporaryDir& folder) {
    if (screen == Screen::Unused) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(onlyFatalNotes);
    } else if (!hasScreen()) {
        if (screen == Screen::Needed)
            return false;
        qputenv("QT_QPA_PLATFORM", platformWithoutScreen(folder));
        qInstallMessageHandler(withoutPlatformNotes);
    }
    return true;
}

int runCommand(const CommandLine& line) {
    HostPaths paths = HostPaths::standard();
    // A tour begins with the settings of a fresh installation and leaves the user's alone.
    QTemporaryDir scratch;
    if (line.command->screen == Screen::Usable)
        paths.settings = scratch.filePath("kestal.ini");
    const auto host = std::make_shared<Host>(paths);
    host->attended = line.command->needsUser() && !line.showsNothing();
    try {
        if (line.command->runAlone && (!line.command->run || line.showsNothing()))
            return line.command->runAlone(line, host);
        ComponentAccess component(host);
        return line.command->run(line, host, component);
    } catch (const std::exception& error) {
        if (host->attended) // the report goes into a window then
            std::fprintf(stderr, "kestal: %s\n", error.what());
        host->report(error.what());
        return exit_codes::Failure;
    }
}

} // namespace

int runProgram(int argc, char** argv) {
    guardStandardStreams();
    const CommandLine line = parseCommandLine({argv + 1, argv + argc});
    if (!line.command) {
        std::fprintf(line.exitCode == exit_codes::Success ? stdout : stderr, "%s\n", line.message.c_str());
        return line.exitCode;
    }
    const QTemporaryDir scratch;
    if (!chooseScreen(line.showsNothing() ? Screen::Unused : line.command->screen, scratch)) {
        std::fprintf(
            stderr, "kestal: there is no screen to show windows on: set DISPLAY or WAYLAND_DISPLAY\n");
        return exit_codes::Failure;
    }
    QCoreApplication::setApplicationName("kestal");
    QCoreApplication::setApplicationVersion(versionText);
    int argumentCount = 1; // the options are the host's, none is the toolkit's
    QApplication application(argumentCount, argv);
    return runCommand(line);
}

} // namespace kestal
