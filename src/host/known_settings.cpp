#include "host/known_settings.h"

#include <algorithm>
#include <iterator>

namespace kestal {

void KnownSettings::note(const std::vector<Setting>& settings) {
    for (const Setting& each : settings)
        values_[{each.section, each.key}] = each.value;
}

std::vector<Setting> KnownSettings::changedIn(const std::vector<Setting>& settings) const {
    std::vector<Setting> changed;
    std::ranges::copy_if(settings, std::back_inserter(changed), [this](const Setting& each) {
        const auto known = values_.find({each.section, each.key});
        return known == values_.end() || known->second != each.value;
    });
    return changed;
}

} // namespace kestal
