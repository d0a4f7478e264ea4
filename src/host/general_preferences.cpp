#include "host/general_preferences.h"

#include <algorithm>

namespace kestal {
namespace {

constexpr const char* section = "Preferences";
constexpr char switchSeparator = '\x7F'; // between an editor's path and its switches

// The rule that a value breaks although it has the preference's type, or "".
std::string rangeFault(const RecordObject& preferences) {
    const auto location = int16Of(preferences.value("ListGroup"));
    return location >= list_groups::Program && location <= list_groups::DataFiles
               ? ""
               : "it must be 0, 1 or 2, not " + std::to_string(location);
}

std::string editorFault(const RecordObject& preferences) {
    const std::string editor = preferences.text("DefaultEditor");
    const bool isText = std::ranges::none_of(editor,
        [](char c) { return (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) && c != switchSeparator; });
    return isText ? "" : "a path must not have control characters";
}

std::string withSeparator(const std::string& folder) {
    return folder.empty() || folder.ends_with('/') ? folder : folder + '/';
}

} // namespace

namespace records {

const RecordClass& genPrefs() {
    static const RecordClass record{"k_gencvf.genPrefs",
        {{"StartMaximized", Variant(false)}, {"ListGroup", Variant(list_groups::DataPath)},
            {"DefaultEditor", Variant("")}, {"MultiplePointEntry", Variant(false)},
            {"KFactor", Variant(0.14)}, {"KeepBackupsInRecycleBin", Variant(true)},
            {"ShowExtension", Variant(true)}, {"LoadLastJob", Variant(true)}}};
    return record;
}

} // namespace records

Ref<RecordObject> makeGeneralPreferences() {
    return Ref<RecordObject>::adopt(new RecordObject(records::genPrefs()));
}

QStringList readGeneralPreferences(RecordObject& preferences, const IniText& settings) {
    QStringList faults = readRecord(preferences, settings, section);
    const std::pair<const char*, std::string> rules[] = {
        {"ListGroup", rangeFault(preferences)}, {"DefaultEditor", editorFault(preferences)}};
    const auto defaults = makeGeneralPreferences();
    for (const auto& [name, fault] : rules) {
        if (fault.empty())
            continue;
        faults += unusedSetting(section, name, fault);
        preferences.set(name, defaults->value(name));
    }
    return faults;
}

std::vector<Setting> generalPreferenceSettings(const RecordObject& preferences) {
    return settingsOf(preferences, section);
}

std::string listFolder(std::int16_t location, const std::string& program, const std::string& dataPath,
    const std::string& jobPath) {
    switch (location) {
    case list_groups::Program:
        return withSeparator(program) + "List/";
    case list_groups::DataPath:
        return withSeparator(dataPath) + "List/";
    case list_groups::DataFiles:
        return withSeparator(jobPath.empty() ? dataPath : jobPath);
    default:
        throw AutomationError(errors::InvalidCall,
            "ListFolderFor: the location must be 0, 1 or 2, not " + std::to_string(location));
    }
}

} // namespace kestal
