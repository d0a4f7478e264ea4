#pragma once

#include "host/record_object.h"
#include "host/settings_file.h"

#include <QStringList>

namespace kestal {

/// Takes over what a section of the settings has for the fields of a record, one key for each. A value that
/// the field cannot take leaves the record's; the result says which and why.
QStringList readRecord(RecordObject& record, const IniText& settings, const std::string& section);

/// What the user's log says of a stored setting that cannot be taken.
QString unusedSetting(const std::string& section, const std::string& key, const std::string& reason);

/// All fields of a record, numbers with a point whatever the locale.
std::vector<Setting> settingsOf(const RecordObject& record, const std::string& section);

} // namespace kestal
