#include "component/composition.h"

#include "platform/database/database_engine.h"
#include "platform/database/memory/database_memory.h"
#include "platform/qt/qt_desktop.h"
#include "platform/system/private_folder.h"
#include "platform/system/system_files.h"

namespace genutil {

Composition::Composition()
    : desktop_(makeQtDesktop()), files_(makeSystemFiles()), databases_(makeDatabaseEngine()),
      databaseMemory_(makeDatabaseMemory([] { return makeCacheFolder() + "/jobs.sqlite"; })),
      component_(*desktop_, *files_, objects_, databases_.get(), databaseMemory_.get()) {}

} // namespace genutil
