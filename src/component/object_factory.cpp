#include "component/object_factory.h"

#include "component/class_objects.h"
#include "component/error_info.h"
#include "component/host_object.h"
#include "component/host_services.h"
#include "hostif/error.h"

#include <k_genutil/activation.h>
#include <k_genutil/interfaces.h>

#include <algorithm>
#include <array>

namespace genutil {
namespace {

using k_genutil::Ref;
namespace host = k_genutil::host_classes;

[[noreturn]] void cannotCreate(const k_genutil::ClassName& name, const std::string& reason) {
    throw Error(errors::CannotCreateObject,
        std::string("The object ") + name.progId + " cannot be created: " + reason);
}

HRESULT createInProcess(IUnknown& classObject, void** object) {
    Ref<IClassFactory> factory;
    const HRESULT result = classObject.QueryInterface(IID_IClassFactory, factory.out());
    return FAILED(result) ? result : factory->CreateInstance(nullptr, IID_IDispatch, object);
}

DispatchClient create(const k_genutil::ClassName& name) {
    Ref<IDispatch> object;
    HRESULT result = S_OK;
    if (const auto classObject = findClassObject(name.clsid)) {
        result = createInProcess(*classObject.get(), object.out());
    } else {
        try {
            result = k_genutil::Server::forClass(name.clsid).create(name.clsid, IID_IDispatch, object.out());
        } catch (const k_genutil::ActivationError& error) {
            cannotCreate(name, error.what());
        }
    }
    if (FAILED(result) || !object)
        cannotCreate(name, "its class factory answers " + standardDescription(numberOf(result)));
    const std::string progId = name.progId;
    return DispatchClient(std::move(object), progId.substr(progId.find('.') + 1));
}

} // namespace

std::unique_ptr<ErrorHandler> AutomationObjectFactory::createErrorHandler() {
    return adaptErrorHandler(create(host::errHandler));
}
std::unique_ptr<GeneralProcedures> AutomationObjectFactory::createGeneralProcedures() {
    return adaptGeneralProcedures(create(host::genProcs));
}
std::unique_ptr<StringUtilities> AutomationObjectFactory::createStringUtilities() {
    return adaptStringUtilities(create(host::strUtil));
}
std::unique_ptr<FileProcedures> AutomationObjectFactory::createFileProcedures() {
    return adaptFileProcedures(create(host::fileProcs));
}
std::unique_ptr<RegistryInfo> AutomationObjectFactory::createRegistryInfo() {
    return adaptRegistryInfo(create(host::regInfo));
}
std::unique_ptr<SystemInfo> AutomationObjectFactory::createSystemInfo() {
    return adaptSystemInfo(create(host::sysInfo));
}
std::unique_ptr<DisplayFormats> AutomationObjectFactory::createDisplayFormats() {
    return adaptDisplayFormats(create(host::dispFormats));
}
std::unique_ptr<InterpolationNames> AutomationObjectFactory::createInterpolationNames() {
    return adaptInterpolationNames(create(host::interpNames));
}
std::unique_ptr<SettingsStore> AutomationObjectFactory::createSettingsStore() {
    return adaptSettingsStore(create(host::settingsStore), create(host::genProcs));
}
std::unique_ptr<InstantHelp> AutomationObjectFactory::createInstantHelp() {
    return adaptInstantHelp(create(host::instantHelp));
}

RecordPtr AutomationObjectFactory::createRecord(const std::string& className) {
    static constexpr std::array recordClasses{host::job, host::jobDetails, host::jobCfg, host::jobGeneral};
    const auto found = std::ranges::find(recordClasses, "k_gencvf." + className,
        [](const k_genutil::ClassName& c) { return std::string(c.progId); });
    if (found == recordClasses.end())
        throw Error(errors::CannotCreateObject, "There is no record class " + className);
    return recordOf(create(*found).object(), className);
}

} // namespace genutil
