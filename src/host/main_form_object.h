#pragma once

#include "host/automation_object.h"

class QWidget;

namespace kestal {

// What dialogs of the component ask of the main window to find their place: `windowState` (0 normal, 1
// minimised, 2 maximised), `Top`, `Left`, `Width`, `Height` of the window with its frame, `picPlot` (`Width`,
// `Height`) and `picContainer` (`Height`). Lengths are twips.

/// `plot` is the part of the window that dialogs cover; the container is what stands below it, the frame
/// included. Once the window is gone every member fails with ObjectNotSet.
Ref<IDispatch> makeMainFormObject(QWidget& window, QWidget& plot);

/// For a program without a main window: the screen, as if a window filled it.
Ref<IDispatch> makeScreenFormObject();

} // namespace kestal
