#pragma once

#include "host/host.h"

namespace kestal {

/// What SaveAllSettings is asked to write, in the order of its arguments.
struct SettingsChoice {
    bool programChanged = false;
    bool programPathMissing = false;
    bool preferences = false;
    bool jobConfiguration = false;
    bool options = false;
    bool further = false;
};

/// Writes the chosen settings into the working copy of the open store. Objects of what is not chosen are not
/// looked at. InvalidCall while no store is open, and for what these settings do not keep: job configurations
/// and further objects.
void saveAllSettings(
    Host& host, const SettingsChoice& choice, IDispatch* prog, IDispatch* genPrefs, IDispatch* lsOptions);

} // namespace kestal
