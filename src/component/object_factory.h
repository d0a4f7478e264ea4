#pragma once

#include "hostif/services.h"

namespace genutil {

// Creates the host's service and record objects as automation objects: through a class factory that the host
// has registered in the process, else through the registry file.
class AutomationObjectFactory final : public ObjectFactory {
public:
    std::unique_ptr<ErrorHandler> createErrorHandler() override;
    std::unique_ptr<GeneralProcedures> createGeneralProcedures() override;
    std::unique_ptr<StringUtilities> createStringUtilities() override;
    std::unique_ptr<FileProcedures> createFileProcedures() override;
    std::unique_ptr<RegistryInfo> createRegistryInfo() override;
    std::unique_ptr<SystemInfo> createSystemInfo() override;
    std::unique_ptr<DisplayFormats> createDisplayFormats() override;
    std::unique_ptr<InterpolationNames> createInterpolationNames() override;
    std::unique_ptr<SettingsStore> createSettingsStore() override;
    std::unique_ptr<InstantHelp> createInstantHelp() override;
    RecordPtr createRecord(const std::string& className) override;
};

} // namespace genutil
