#pragma once

#include "component/object_factory.h"
#include "frame/component.h"

#include <memory>

namespace genutil {

// The one place where the component is put together: this desktop, this system's files, the databases that
// it can read, the host's objects.
class Composition {
public:
    Composition();
    Component& component() { return component_; }

private:
    std::unique_ptr<Desktop> desktop_;
    std::unique_ptr<FileSystem> files_;
    std::unique_ptr<DatabaseEngine> databases_;
    std::unique_ptr<DatabaseMemory> databaseMemory_;
    AutomationObjectFactory objects_;
    Component component_;
};

} // namespace genutil
