#include "host/text_rules.h"

#include "host/automation_object.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>

namespace kestal {
namespace {

// A finite number as decimal digits: 0.digits x 10^exponent.
struct Decimal {
    std::string digits;
    int exponent;
    bool negative;
};

Decimal decimalOf(double value) {
    constexpr int places = 14;
    char text[40]; // d.dddddddddddddde+xx
    *std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific, places).ptr =
        '\0';
    const int exponent = std::atoi(text + places + 3) + 1;
    Decimal decimal{std::string(1, text[0]) + std::string(text + 2, places), exponent, value < 0};
    if (value == 0)
        decimal.exponent = 0;
    return decimal;
}

// The digits before and after the point, rounded to `decimals` places.
std::pair<std::string, std::string> rounded(const Decimal& decimal, int decimals) {
    const int kept = decimal.exponent + decimals; // digits that stay
    std::string digits = decimal.digits;
    if (kept < 0)
        digits = "0";
    else if (kept < static_cast<int>(digits.size())) {
        const bool up = digits[static_cast<std::size_t>(kept)] >= '5';
        digits = "0" + digits.substr(0, static_cast<std::size_t>(kept));
        for (std::size_t i = digits.size(); up && i-- > 0;) {
            if (digits[i] != '9') {
                ++digits[i];
                break;
            }
            digits[i] = '0';
        }
    } else {
        digits = "0" + digits + std::string(static_cast<std::size_t>(kept) - digits.size(), '0');
    }
    // Now an integer, in units of the last decimal place.
    const auto places = static_cast<std::size_t>(decimals);
    if (digits.size() <= places)
        digits.insert(0, places + 1 - digits.size(), '0');
    std::string whole = digits.substr(0, digits.size() - places);
    whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));
    return {whole, digits.substr(digits.size() - places)};
}

bool isExecutable(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    return std::filesystem::is_regular_file(status) &&
           (status.permissions() & std::filesystem::perms::owner_exec) != std::filesystem::perms::none;
}

std::size_t countOf(const std::string& text, char c) {
    return static_cast<std::size_t>(std::ranges::count(text, c));
}

} // namespace

std::string nextField(std::string& text, const std::string& separator) {
    const auto end = separator.empty() ? text.npos : text.find(separator);
    std::string field = text.substr(0, end);
    text = end == text.npos ? std::string() : text.substr(end + separator.size());
    return field;
}

std::string formatNumber(double value, const std::string& format, const genutil::NumberLocale& locale) {
    if (!std::isfinite(value))
        throw AutomationError(errors::InvalidCall, "FormatValue: the number must be finite");
    const auto first = format.find_first_of("#0.");
    if (first == format.npos)
        throw AutomationError(errors::InvalidCall,
            "FormatValue: the format must contain # or 0, which '" + format + "' does not");
    const auto last = format.find_last_of("#0.");
    const std::string picture = format.substr(first, last - first + 1);
    const auto point = picture.find('.');
    const std::string wholePicture = picture.substr(0, point);
    const std::string decimalPicture = point == picture.npos ? "" : picture.substr(point + 1);
    if (picture.find_first_not_of("#0.,") != picture.npos ||
        decimalPicture.find_first_of(".,") != picture.npos)
        throw AutomationError(errors::InvalidCall,
            "FormatValue: the digits of a format must be # and 0 with one decimal point, not '" + picture +
                "'");

    auto [whole, decimals] = rounded(decimalOf(value), static_cast<int>(decimalPicture.size()));
    const bool isZero = whole.empty() && decimals.find_first_not_of('0') == decimals.npos;
    const std::size_t leastWhole = countOf(wholePicture, '0');
    if (whole.size() < leastWhole)
        whole.insert(0, leastWhole - whole.size(), '0');
    if (wholePicture.find(',') != wholePicture.npos)
        for (auto at = static_cast<std::ptrdiff_t>(whole.size()) - 3; at > 0; at -= 3)
            whole.insert(static_cast<std::size_t>(at), locale.groupSeparator);
    while (!decimals.empty() && decimals.back() == '0' && decimalPicture[decimals.size() - 1] == '#')
        decimals.pop_back();
    return (value < 0 && !isZero ? "-" : "") + format.substr(0, first) + whole +
           (point == picture.npos ? "" : locale.decimalPoint) + decimals + format.substr(last + 1);
}

std::string angleText(const std::string& degrees, int decimals, const std::string& kind) {
    constexpr int mostDecimals = 6;
    constexpr double largest = 1e6; // degrees; beyond it the seconds would have no meaning
    if (decimals < 0 || decimals > mostDecimals)
        throw AutomationError(errors::InvalidCall, "AngleText: the seconds have 0 to 6 decimals");
    const double angle = numberOf(Variant(std::string_view(degrees)));
    if (std::fabs(angle) > largest)
        throw AutomationError(errors::InvalidCall, "AngleText: an angle must be less than a million degrees");
    const auto scale = static_cast<long long>(std::pow(10.0, decimals));
    const long long total = std::llround(std::fabs(angle) * 3600 * static_cast<double>(scale));
    const long long seconds = total / scale;
    char text[64];
    int length = std::snprintf(
        text, sizeof text, "%lld\u00B0%02lld'%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
    if (decimals > 0)
        std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), ".%0*lld", decimals,
            total % scale);
    std::string result = std::string(text) + "\"";
    const bool negative = angle < 0 && total != 0;
    if (sameName(kind, "LATITUDE"))
        return result + (negative ? "S" : "N");
    if (sameName(kind, "LONGITUDE"))
        return result + (negative ? "W" : "E");
    return (negative ? "-" : "") + result;
}

std::string captionText(const std::string& text) {
    std::string caption;
    for (const char c : text)
        caption.append(c == '&' ? 2 : 1, c);
    return caption;
}

double transformValue(double value, int code) {
    constexpr int mostDecimals = 12;
    if (code > 0 || code < -mostDecimals)
        throw AutomationError(errors::InvalidCall,
            "TransformValue: the code must be from -12 to 0, not " + std::to_string(code));
    if (code == 0 || !std::isfinite(value))
        return value;
    const double scale = std::pow(10.0, -code);
    const double scaled = value * scale;
    return std::isfinite(scaled) ? std::round(scaled) / scale : value;
}

std::string editorCommand(const std::string& editor, const std::string& file) {
    constexpr char switchMark = 127;
    std::string switches = editor;
    std::string program = nextField(switches, std::string(1, switchMark));
    std::ranges::replace(switches, switchMark, ' ');
    if (program.find_first_not_of(" \t") == program.npos)
        throw AutomationError(errors::InvalidCall, "EditorCommand: no editor is set");
    if (editor.find(switchMark) != editor.npos || isExecutable(program))
        program = quotedArgument(program);
    if (!switches.empty())
        program += " " + switches;
    return program + " " + quotedArgument(file.starts_with('-') ? "./" + file : file);
}

std::string quotedArgument(const std::string& argument) {
    std::string quoted = "\"";
    for (const char c : argument) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

std::vector<std::string> splitCommandLine(const std::string& commandLine) {
    std::vector<std::string> arguments;
    std::string argument;
    bool begun = false;
    bool quoted = false;
    for (std::size_t i = 0; i < commandLine.size(); ++i) {
        const char c = commandLine[i];
        const char next = i + 1 < commandLine.size() ? commandLine[i + 1] : '\0';
        if (c == '"') {
            quoted = !quoted;
            begun = true;
        } else if (quoted && c == '\\' && (next == '"' || next == '\\')) {
            argument += next;
            ++i;
        } else if (!quoted && (c == ' ' || c == '\t')) {
            if (begun)
                arguments.push_back(std::exchange(argument, {}));
            begun = false;
        } else {
            argument += c;
            begun = true;
        }
    }
    if (quoted)
        throw AutomationError(
            errors::InvalidCall, "a command line must close its double quotes: " + commandLine);
    if (begun)
        arguments.push_back(argument);
    return arguments;
}

PathParts splitPath(const std::string& path) {
    PathParts parts;
    const bool hasDrive =
        path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0]));
    parts.drive = hasDrive ? path.substr(0, 2) : "";
    const std::string rest = path.substr(parts.drive.size());
    const auto separator = rest.find_last_of(hasDrive ? "/\\" : "/");
    const std::size_t folderLength = separator == rest.npos ? 0 : separator + 1;
    parts.folder = rest.substr(0, folderLength);
    parts.file = rest.substr(folderLength);
    return parts;
}

std::string shortenedPath(const std::string& path, const std::function<bool(const std::string&)>& fits) {
    if (fits(path))
        return path;
    const auto name = path.rfind('/');
    if (name == std::string::npos)
        return {};
    // The first folders, as many as fit, and the name with its separator.
    for (auto end = name; end != std::string::npos && end > 0;) {
        end = path.rfind('/', end - 1);
        if (end == std::string::npos)
            break;
        if (const std::string shorter = path.substr(0, end + 1) + "..." + path.substr(name); fits(shorter))
            return shorter;
    }
    const std::string nameOnly = "..." + path.substr(name);
    return fits(nameOnly) ? nameOnly : "";
}

std::string splitExtension(std::string& name) {
    const std::size_t start = name.size() - splitPath(name).file.size();
    const auto dot = name.rfind('.');
    if (dot == name.npos || dot <= start)
        return {};
    std::string extension = name.substr(dot);
    name.resize(dot);
    return extension;
}

} // namespace kestal
