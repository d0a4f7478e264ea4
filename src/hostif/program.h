#pragma once

#include "hostif/record.h"

#include <cstdint>
#include <string>

// The typed keys of the host's record objects, one namespace per object.
namespace genutil {

namespace program {
inline constexpr Property<std::string> ProgramFolder{"ProgramFolder"}; // with its trailing separator
inline constexpr Property<std::string> HelpSource{"HelpSource"};
inline constexpr Property<std::string> SettingsFile{"SettingsFile"};
inline constexpr Property<std::string> SettingsWorkFile{"SettingsWorkFile"};
inline constexpr Property<std::string> DataPath{"DataPath"};
inline constexpr Property<std::string> ListFolder{"ListFolder"};
inline constexpr Property<std::string> WindowsFolder{"WindowsFolder"};
inline constexpr Property<std::string> VersionText{"VersionText"};
inline constexpr Property<std::int16_t> FileViewState{"FileViewState"}; // window state of the file viewer
inline constexpr Property<bool> WipeAfterView{"WipeAfterView"};
inline constexpr Property<bool> IsWin9xFamily{"IsWin9xFamily"};
inline constexpr Property<bool> IsWinNTFamily{"IsWinNTFamily"};
inline constexpr Property<bool> Changed{"Changed"};
} // namespace program

namespace job {
inline constexpr Property<std::string> JobPath{"JobPath"}; // with its trailing separator
inline constexpr Property<std::string> JobName{"JobName"};
inline constexpr Property<std::string> JobExtension{"JobExtension"};
inline constexpr Property<std::string> JobFullName{"JobFullName"};
} // namespace job

namespace instanthelp {
inline constexpr Property<bool> InstantHelpOn{"InstantHelpOn"};
} // namespace instanthelp

} // namespace genutil
