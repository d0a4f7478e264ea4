#pragma once

#include "host/settings_file.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kestal {

/// The settings that this program goes by: as it has read them, or stored them since. Several programs share
/// a settings file, so each stores only what its user has changed, and leaves what others have stored
/// meanwhile.
class KnownSettings {
public:
    void note(const std::vector<Setting>& settings);
    /// Those that have another value than is known.
    std::vector<Setting> changedIn(const std::vector<Setting>& settings) const;

private:
    std::map<std::pair<std::string, std::string>, std::string> values_; // by section and key
};

} // namespace kestal
