#include "host/record_settings.h"

namespace kestal {

QString unusedSetting(const std::string& section, const std::string& key, const std::string& reason) {
    return QString("The stored setting %1 in section %2 is not used: %3")
        .arg(key.c_str(), section.c_str(), reason.c_str());
}

QStringList readRecord(RecordObject& record, const IniText& settings, const std::string& section) {
    QStringList faults;
    for (const auto& field : record.fields()) {
        try {
            if (const auto stored = settings.value(section, field.name))
                record.set(field.name, Variant(std::string_view(*stored)));
        } catch (const std::exception& error) {
            faults += unusedSetting(section, field.name, error.what());
        }
    }
    return faults;
}

std::vector<Setting> settingsOf(const RecordObject& record, const std::string& section) {
    std::vector<Setting> settings;
    for (const auto& field : record.fields())
        settings.push_back({section, field.name, record.text(field.name)});
    return settings;
}

} // namespace kestal
