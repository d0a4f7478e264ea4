#pragma once

#include "host/ini_text.h"

#include <QString>

#include <span>
#include <string>

// Settings files: INI files of sections with keys, UTF-8. A value is always one text, whatever it contains.
// A file is only ever replaced as a whole, so whoever reads it finds the old settings or the new ones,
// whatever ends the writer; writers wait for each other, and each changes nothing but its own keys.
namespace kestal {

struct Setting {
    std::string section;
    std::string key;
    std::string value;
};

/// The settings of a file, none where it is missing. A file that exists and cannot be read: PathAccess.
/// Lines that break a rule are passed over.
IniText loadSettings(const std::string& file);
/// One value, or `fallback` where the file, the section or the key is missing. PathAccess as above;
/// ConversionError for a value that is not UTF-8.
std::string readSetting(
    const std::string& file, const std::string& section, const std::string& key, const std::string& fallback);

/// Stores all values or none; creates the file and its folder where they are missing. PathAccess with the
/// file and the rule that it breaks when they cannot be stored; the file is then as it was.
void storeSettings(const std::string& file, std::span<const Setting> settings);
void writeSetting(
    const std::string& file, const std::string& section, const std::string& key, const std::string& value);

/// The file that a path leads to: symbolic links are followed, also one whose file does not exist yet.
/// PathAccess where they form a loop, InvalidCall for a path that is not absolute.
std::string realSettingsFile(const std::string& file);
/// Where the file's working copy stands while it is written.
std::string workingCopyOf(const std::string& realFile);

/// A change of a settings file, which nobody else can write from the first moment to the last: its working
/// copy is made, changed by anybody who likes, and takes the file's place. Given up when it is destroyed
/// before.
class SettingsChange {
public:
    /// Waits a few seconds for another writer. PathAccess when the file cannot be changed, which is left as
    /// it was. A working copy that was left behind is replaced.
    explicit SettingsChange(const std::string& file);
    ~SettingsChange();
    SettingsChange(const SettingsChange&) = delete;
    SettingsChange& operator=(const SettingsChange&) = delete;

    const std::string& workingCopy() const { return copy_; }
    /// The settings as they were found.
    const IniText& settings() const { return settings_; }
    /// Makes the working copy, with these contents, the mode and the group of the file.
    void write(const IniText& contents);
    /// Changes the working copy.
    void store(std::span<const Setting> settings);
    /// What was changed so far.
    const std::vector<Setting>& stored() const { return stored_; }
    /// The working copy becomes the file, in one step. PathAccess when it is not whole or cannot.
    void commit();

private:
    void lock();
    void requireChangeable() const;
    IniText workingContents() const;

    std::string file_;
    std::string copy_;
    IniText settings_;
    int lock_ = -1;
    std::vector<Setting> stored_;
    bool isCommitted_ = false;
};

} // namespace kestal
