#include "component/composition.h"

#include "platform/database/database_engine.h"
#include "platform/qt/qt_desktop.h"
#include "platform/system/system_files.h"

namespace genutil {

Composition::Composition()
    : desktop_(makeQtDesktop()), files_(makeSystemFiles()), databases_(makeDatabaseEngine()),
      component_(*desktop_, *files_, objects_, databases_.get()) {}

} // namespace genutil
