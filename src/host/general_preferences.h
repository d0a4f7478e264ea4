#pragma once

#include "host/record_settings.h"

// The user's general preferences: the record genPrefs, kept in the section "Preferences" of the settings.
namespace kestal {

/// Which list-files location the preference ListGroup stands for.
namespace list_groups {
inline constexpr std::int16_t Program = 0;
inline constexpr std::int16_t DataPath = 1;
inline constexpr std::int16_t DataFiles = 2;
} // namespace list_groups

/// With the defaults.
Ref<RecordObject> makeGeneralPreferences();
/// Takes over what is stored. A value that the preference cannot take leaves the default and is named, with
/// the reason, in the result.
QStringList readGeneralPreferences(RecordObject& preferences, const IniText& settings);
std::vector<Setting> generalPreferenceSettings(const RecordObject& preferences);

/// Where list files go. Folders end in a separator; without an open job `jobPath` is empty and the data files
/// are those of the data path. InvalidCall for a location that is not one of list_groups.
std::string listFolder(std::int16_t location, const std::string& program, const std::string& dataPath,
    const std::string& jobPath);

} // namespace kestal
