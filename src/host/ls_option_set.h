#pragma once

#include "host/record_settings.h"

#include <span>

// The least-squares options: what steers the adjustment of a network, and what is done with its points.
namespace kestal {

/// An option: a member of the option set and the field of a header record that stores it.
struct LsOption {
    const char* name;
    Variant initial;  ///< the factory default; its type is the option's
    const char* unit; ///< or what the codes mean; "" for True and False
};

/// All 53, in the order of the option set's interface.
std::span<const LsOption> lsOptions();

/// An option set with the factory defaults.
Ref<RecordObject> makeLsOptionSet();

/// Takes over what the settings have in their section "LeastSquares", one key for each option. A value that
/// the option cannot take leaves the default; the result says which and why.
QStringList readLsOptionSet(RecordObject& optionSet, const IniText& settings);
std::vector<Setting> lsOptionSettings(const RecordObject& optionSet);

} // namespace kestal
