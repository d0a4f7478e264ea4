#include "component/composition.h"

#include "platform/qt/qt_desktop.h"
#include "platform/system/system_files.h"

namespace genutil {

Composition::Composition()
    : desktop_(makeQtDesktop()), files_(makeSystemFiles()), component_(*desktop_, *files_, objects_) {}

} // namespace genutil
