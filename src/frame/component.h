#pragma once

#include "hostif/database.h"
#include "hostif/desktop.h"
#include "hostif/services.h"

#include <memory>
#include <string>

namespace genutil {

// What every dialog works with: the desktop, the databases, files, and the host's service objects. It is
// passed in wherever it is needed; only the class factory owns one for the whole process.
class Component {
public:
    // `databases` may be null where no dialog opens a job, `databaseMemory` where nothing is to be kept of
    // them.
    Component(Desktop& desktop, FileSystem& files, ObjectFactory& objects,
        DatabaseEngine* databases = nullptr, DatabaseMemory* databaseMemory = nullptr);
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    Desktop& desktop() const { return desktop_; }
    FileSystem& files() const { return files_; }
    ObjectFactory& objects() const { return objects_; }
    // Throws ObjectNotSet where there is none.
    DatabaseEngine& databases() const;
    // Null where there is none.
    DatabaseMemory* databaseMemory() const { return databaseMemory_; }

    // The host's service objects, each created on first use and kept for the life of the component. They
    // throw CannotCreateObject, naming the class, when the host installation lacks it.
    ErrorHandler& errHandler();
    GeneralProcedures& genProcs();
    StringUtilities& strUtil();
    RegistryInfo& regInfo();
    SystemInfo& sysInfo();
    DisplayFormats& dispFormats();
    InterpolationNames& interpNames();

private:
    Desktop& desktop_;
    FileSystem& files_;
    ObjectFactory& objects_;
    DatabaseEngine* databases_;
    DatabaseMemory* databaseMemory_;
    std::unique_ptr<ErrorHandler> errHandler_;
    std::unique_ptr<GeneralProcedures> genProcs_;
    std::unique_ptr<StringUtilities> strUtil_;
    std::unique_ptr<RegistryInfo> regInfo_;
    std::unique_ptr<SystemInfo> sysInfo_;
    std::unique_ptr<DisplayFormats> dispFormats_;
    std::unique_ptr<InterpolationNames> interpNames_;
};

} // namespace genutil
