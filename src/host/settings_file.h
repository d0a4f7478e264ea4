#pragma once

#include <span>
#include <string>
#include <utility>

// Settings files: INI files of sections with keys, UTF-8. A value is always one text, whatever it contains.
namespace kestal {

/// The value, or `fallback` where the file, the section or the key is missing. A file that exists and cannot
/// be read: PathAccess.
std::string readSetting(
    const std::string& file, const std::string& section, const std::string& key, const std::string& fallback);

/// Creates the file and its folder where they are missing. PathAccess when the value cannot be stored.
void writeSetting(
    const std::string& file, const std::string& section, const std::string& key, const std::string& value);
/// The same for many values, by their keys: all are stored or none.
void writeSettings(const std::string& file, const std::string& section,
    std::span<const std::pair<std::string, std::string>> values);

} // namespace kestal
