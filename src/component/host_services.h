#pragma once

#include "component/dispatch_client.h"
#include "hostif/services.h"

namespace genutil {

// The host's service objects over late-bound automation objects. An operation's by-reference results are
// arguments that the object writes to; a single result is the operation's own.
std::unique_ptr<ErrorHandler> adaptErrorHandler(DispatchClient errHandler);
std::unique_ptr<GeneralProcedures> adaptGeneralProcedures(DispatchClient genProcs);
std::unique_ptr<StringUtilities> adaptStringUtilities(DispatchClient strUtil);
std::unique_ptr<FileProcedures> adaptFileProcedures(DispatchClient fileProcs);
std::unique_ptr<RegistryInfo> adaptRegistryInfo(DispatchClient regInfo);
std::unique_ptr<SystemInfo> adaptSystemInfo(DispatchClient sysInfo);
std::unique_ptr<DisplayFormats> adaptDisplayFormats(DispatchClient dispFormats);
std::unique_ptr<InterpolationNames> adaptInterpolationNames(DispatchClient interpNames);
// SaveAllSettings is an operation of the general-procedures object.
std::unique_ptr<SettingsStore> adaptSettingsStore(DispatchClient settingsStore, DispatchClient genProcs);
std::unique_ptr<InstantHelp> adaptInstantHelp(DispatchClient instantHelp);

} // namespace genutil
