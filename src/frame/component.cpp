#include "frame/component.h"

#include "hostif/error.h"

namespace genutil {
namespace {

template<class Service>
Service& onFirstUse(std::unique_ptr<Service>& service, ObjectFactory& objects,
    std::unique_ptr<Service> (ObjectFactory::*create)()) {
    if (!service)
        service = (objects.*create)();
    return *service;
}

} // namespace

Component::Component(Desktop& desktop, FileSystem& files, ObjectFactory& objects, DatabaseEngine* databases,
    DatabaseMemory* databaseMemory)
    : desktop_(desktop), files_(files), objects_(objects), databases_(databases),
      databaseMemory_(databaseMemory) {}

DatabaseEngine& Component::databases() const {
    if (!databases_)
        throw Error(errors::ObjectNotSet, "No database engine is set");
    return *databases_;
}

ErrorHandler& Component::errHandler() {
    return onFirstUse(errHandler_, objects_, &ObjectFactory::createErrorHandler);
}

GeneralProcedures& Component::genProcs() {
    return onFirstUse(genProcs_, objects_, &ObjectFactory::createGeneralProcedures);
}

StringUtilities& Component::strUtil() {
    return onFirstUse(strUtil_, objects_, &ObjectFactory::createStringUtilities);
}

RegistryInfo& Component::regInfo() {
    return onFirstUse(regInfo_, objects_, &ObjectFactory::createRegistryInfo);
}

SystemInfo& Component::sysInfo() {
    return onFirstUse(sysInfo_, objects_, &ObjectFactory::createSystemInfo);
}

DisplayFormats& Component::dispFormats() {
    return onFirstUse(dispFormats_, objects_, &ObjectFactory::createDisplayFormats);
}

InterpolationNames& Component::interpNames() {
    return onFirstUse(interpNames_, objects_, &ObjectFactory::createInterpolationNames);
}

} // namespace genutil
