#include "host/record_settings.h"

namespace kestal {

QStringList readRecord(RecordObject& record, const IniText& settings, const std::string& section) {
    QStringList faults;
    for (const auto& field : record.fields()) {
        try {
            if (const auto stored = settings.value(section, field.name))
                record.set(field.name, Variant(std::string_view(*stored)));
        } catch (const std::exception& error) {
            faults += QString("The stored setting %1 in section %2 is not used: %3")
                          .arg(field.name, section.c_str(), error.what());
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
