#pragma once

#include "host/host.h"

class QWidget;

namespace kestal {

// The main window as dialogs of the component reach it by member names. To find their place: `windowState` (0
// normal, 1 minimised, 2 maximised), `Top`, `Left`, `Width`, `Height` of the window with its frame, `picPlot`
// (`Width`, `Height`) and `picContainer` (`Height`); lengths are twips. What the plot shows: each View menu
// item by its name (view_marks.h) with `Checked`, and `picScaleBar` with `Visible`. `mnuHelpInstantHelp` with
// `Checked`. Marks are the host's, so that they can be read and put with and without a window.

/// `plot` is the part of the window that dialogs cover; the container is what stands below it, the frame
/// included. Once the window is gone every member fails with ObjectNotSet.
Ref<IDispatch> makeMainFormObject(std::shared_ptr<Host> host, QWidget& window, QWidget& plot);

/// For a program without a main window: the screen, as if a window filled it.
Ref<IDispatch> makeScreenFormObject(std::shared_ptr<Host> host);

} // namespace kestal
