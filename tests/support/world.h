#pragma once

#include "frame/component.h"
#include "support/fake_files.h"
#include "support/fake_host.h"
#include "support/scripted_desktop.h"

namespace genutil::fake {

// A component with everything around it faked. The desktop goes first: it still holds forms, and forms use
// the host.
struct World {
    FakeHost host;
    FakeFiles files;
    ScriptedDesktop desktop;
    Component component{desktop, files, host};
};

} // namespace genutil::fake
