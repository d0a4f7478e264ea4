#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestal {

/// The text of a settings file: sections of keys, each with one value. A line that is not set stays as it is,
/// byte by byte, whatever it holds: comments, sections and keys of others, line ends.
class IniText {
public:
    IniText() = default;
    /// Takes the contents of any file.
    explicit IniText(const std::string& bytes);

    /// The rule that the contents break, or "": only text whose every line is blank, a comment (";" or "#"),
    /// a [section] or key=value may be written back.
    const std::string& fault() const { return fault_; }

    /// The value, with what the quotes and escapes of the file stand for; nothing where the key is missing.
    /// ConversionError for one that is not UTF-8.
    std::optional<std::string> value(std::string_view section, std::string_view key) const;
    /// False when the key has the value already.
    bool set(std::string_view section, std::string_view key, std::string_view value);

    /// The contents; the last line ends like the others.
    std::string bytes() const;

private:
    struct Line {
        std::string text;    // without the line feed
        std::string section; // the one that the line stands in or begins
        std::string key;     // "" but for key=value
        std::size_t valueBegin = 0;
        bool beginsSection = false;
    };
    void parseLine(Line& line, std::size_t number);
    const Line* find(std::string_view section, std::string_view key) const;

    std::vector<Line> lines_;
    std::string lineEnd_; // what stands before a line feed: "" or "\r"
    std::string fault_;
};

} // namespace kestal
