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

namespace jobdetails {
inline constexpr Property<std::string> Description{"Description"};
inline constexpr Property<std::string> Surveyor{"Surveyor"};
inline constexpr Property<std::string> Date{"Date"}; // as the user wrote it
inline constexpr Property<std::string> Reference{"Reference"};
} // namespace jobdetails

namespace jobcfg {
inline constexpr Property<std::uint8_t> OutputDecH{"OutputDecH"}; // decimals of horizontal results
inline constexpr Property<std::uint8_t> OutputDecV{"OutputDecV"}; // decimals of vertical results
inline constexpr Property<std::int16_t> CoordType{"CoordType"};   // 0 plane, 1 grid projection, 2 geographic
inline constexpr Property<std::string> Projection{"Projection"};
inline constexpr Property<std::int16_t> Zone{"Zone"};
inline constexpr Property<double> NValue{"NValue"};
inline constexpr Property<std::string> DatumV{"DatumV"};
inline constexpr Property<Value> EarthRadius{"EarthRadius"};
inline constexpr Property<bool> ApplyGeoid{"ApplyGeoid"};
inline constexpr Property<std::string> InterpMethod{"InterpMethod"};
inline constexpr Property<std::string> GridFile{"GridFile"};
inline constexpr Property<std::string> Spheroid{"Spheroid"};
inline constexpr Property<std::string> DatumH{"DatumH"};
inline constexpr Property<double> DeflectionNS{"DeflectionNS"};
inline constexpr Property<double> DeflectionEW{"DeflectionEW"};
inline constexpr Property<std::int16_t> ApproxLat{"ApproxLat"};
inline constexpr Property<bool> GeodeticDisplays{"GeodeticDisplays"}; // geographic plots, N-values and zones
inline constexpr Property<bool> NoLinearScale{"NoLinearScale"};       // plots without a scale bar
} // namespace jobcfg

namespace jobgeneral {
inline constexpr Property<std::int32_t> ValidHorizPts{"ValidHorizPts"};
inline constexpr Property<std::int32_t> CurrentMaxPoint{"CurrentMaxPoint"};
inline constexpr Property<std::int32_t> FirstFreePoint{"FirstFreePoint"};
inline constexpr Property<std::int32_t> FirstPointStored{"FirstPointStored"};
inline constexpr Property<std::string> TransType{"TransType"};
inline constexpr Property<bool> GeoidUpdate{"GeoidUpdate"};
inline constexpr Property<double> MinimumX{"MinimumX"}; // X: easting or longitude, Y: northing or latitude
inline constexpr Property<double> MinimumY{"MinimumY"};
inline constexpr Property<double> MaximumX{"MaximumX"};
inline constexpr Property<double> MaximumY{"MaximumY"};
} // namespace jobgeneral

// The user's general preferences.
namespace genprefs {
inline constexpr Property<bool> StartMaximized{"StartMaximized"};
inline constexpr Property<std::int16_t> ListGroup{"ListGroup"}; // 0 program's, 1 data path's "List"; 2 data's
// A path; or a path, character 127 and switches.
inline constexpr Property<std::string> DefaultEditor{"DefaultEditor"};
inline constexpr Property<bool> MultiplePointEntry{"MultiplePointEntry"};
inline constexpr Property<double> KFactor{"KFactor"}; // refraction index
inline constexpr Property<bool> KeepBackupsInRecycleBin{"KeepBackupsInRecycleBin"};
inline constexpr Property<bool> ShowExtension{"ShowExtension"};
inline constexpr Property<bool> LoadLastJob{"LoadLastJob"};
} // namespace genprefs

// The host's main window, lengths in twips; picPlot, picContainer and picScaleBar and the menu items are
// objects of it.
namespace mainform {
inline constexpr Property<std::int16_t> windowState{"windowState"};
inline constexpr Property<double> Left{"Left"};
inline constexpr Property<double> Top{"Top"};
inline constexpr Property<double> Width{"Width"};
inline constexpr Property<double> Height{"Height"};
inline constexpr const char* picPlot = "picPlot";
inline constexpr const char* picContainer = "picContainer";
inline constexpr const char* picScaleBar = "picScaleBar";
inline constexpr const char* mnuHelpInstantHelp = "mnuHelpInstantHelp";
inline constexpr Property<bool> Checked{"Checked"}; // of a menu item
inline constexpr Property<bool> Visible{"Visible"}; // of a picture
} // namespace mainform

namespace instanthelp {
inline constexpr Property<bool> InstantHelpOn{"InstantHelpOn"};
} // namespace instanthelp

} // namespace genutil
