#include "host/services_settings.h"

#include "host/general_preferences.h"
#include "host/late_bound.h"
#include "host/ls_option_set.h"
#include "host/services.h"

namespace kestal {
namespace {

constexpr const char* programSection = "Kestal";

SettingsChange& storeOf(Host& host, const char* member) {
    if (!host.openStore)
        throw AutomationError(errors::InvalidCall, std::string(member) + ": the settings store is not open");
    return *host.openStore;
}

// A copy of the caller's record as the host keeps it, so that a value that does not fit is refused before
// anything is written.
Ref<RecordObject> taken(Ref<RecordObject> record, IDispatch* source) {
    record->copyFrom(source);
    return record;
}

void append(std::vector<Setting>& all, const std::vector<Setting>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

// settingsStore. The store is the settings file; its working copy stands beside it from OpenSettingsStore
// until CloseSettingsStore, which puts it in the file's place.
class SettingsStore : public AutomationObject {
public:
    explicit SettingsStore(HostPtr host)
        : AutomationObject("k_genproc.settingsStore"), host_(std::move(host)) {
        property("ProgramSectionName", [] { return Variant(programSection); });
        method("OpenSettingsStore", [this](IDispatch* prog, bool& isStore, bool& hasWorkingCopy) {
            isStore = false;
            hasWorkingCopy = false;
            const bool success = open(prog);
            isStore = success;
            hasWorkingCopy = success;
            return success;
        });
        // The last argument comes back as True: there is no working copy any more.
        method("CloseSettingsStore", [this](IDispatch*, bool, bool, bool& isClosed) {
            SettingsChange& store = storeOf(*host_, "CloseSettingsStore");
            store.commit();
            host_->knownSettings.note(store.stored());
            host_->openStore.reset();
            isClosed = true;
        });
    }

private:
    // False, with the reason put before the user, where the settings cannot be written.
    bool open(IDispatch* prog) {
        host_->abandonStore();
        try {
            auto change = std::make_unique<SettingsChange>(textOf(LateBound(prog).get("SettingsFile")));
            change->write(change->settings());
            host_->openStore = std::move(change);
            return true;
        } catch (const std::exception& error) {
            host_->report(error.what(), choiceIsTemporary);
            return false;
        }
    }

    HostPtr host_;
};

} // namespace

void saveAllSettings(
    Host& host, const SettingsChoice& choice, IDispatch* prog, IDispatch* genPrefs, IDispatch* lsOptions) {
    SettingsChange& store = storeOf(host, "SaveAllSettings");
    if (choice.jobConfiguration || choice.further)
        throw AutomationError(errors::InvalidCall,
            "SaveAllSettings: job configurations and further objects are not kept in the settings");
    std::vector<Setting> settings;
    if (choice.programChanged)
        append(settings, host.programSettings(prog));
    if (choice.programPathMissing)
        settings.push_back({programSection, "ProgPath", textOf(LateBound(prog).get("ProgramFolder"))});
    if (choice.preferences)
        append(settings, generalPreferenceSettings(*taken(makeGeneralPreferences(), genPrefs).get()));
    if (choice.options)
        append(settings, lsOptionSettings(*taken(makeLsOptionSet(), lsOptions).get()));
    store.store(host.knownSettings.changedIn(settings));
}

Ref<IDispatch> makeSettingsStore(const HostPtr& host) {
    return Ref<IDispatch>::adopt(new SettingsStore(host));
}

} // namespace kestal
