#include "host/settings_file.h"

#include "host/automation_object.h"

#include <QFileInfo>
#include <QSettings>
#include <QStringList>

#include <array>

namespace kestal {
namespace {

QString pathOf(const std::string& file) {
    const QString path = QString::fromStdString(file);
    // A relative name would depend on where the program was started.
    if (!QFileInfo(path).isAbsolute())
        throw AutomationError(
            errors::InvalidCall, "a settings file must be given with its full path, not '" + file + "'");
    return path;
}

QString keyOf(const std::string& section, const std::string& key) {
    if (section.empty() || key.empty())
        throw AutomationError(errors::InvalidCall, "a setting must have a section and a key");
    return QString::fromStdString(section) + '/' + QString::fromStdString(key);
}

[[noreturn]] void refuse(const std::string& file, const char* act) {
    throw AutomationError(errors::PathAccess, "the settings file " + file + " cannot be " + act);
}

} // namespace

std::string readSetting(const std::string& file, const std::string& section, const std::string& key,
    const std::string& fallback) {
    const QString path = pathOf(file);
    if (QFileInfo::exists(path) && !QFileInfo(path).isReadable())
        refuse(file, "read");
    const QSettings settings(path, QSettings::IniFormat);
    const QVariant value = settings.value(keyOf(section, key));
    if (!value.isValid())
        return fallback;
    // A line written by hand without quotes comes as a list of what stands between its commas.
    return value.toStringList().join(',').toStdString();
}

void writeSetting(
    const std::string& file, const std::string& section, const std::string& key, const std::string& value) {
    writeSettings(file, section, std::array{std::pair(key, value)});
}

void writeSettings(const std::string& file, const std::string& section,
    std::span<const std::pair<std::string, std::string>> values) {
    QSettings settings(pathOf(file), QSettings::IniFormat);
    for (const auto& [key, value] : values)
        settings.setValue(keyOf(section, key), QString::fromStdString(value));
    settings.sync();
    if (settings.status() != QSettings::NoError)
        refuse(file, "written");
}

} // namespace kestal
