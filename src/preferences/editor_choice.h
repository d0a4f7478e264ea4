#pragma once

#include "hostif/desktop.h"
#include "hostif/record.h"
#include "hostif/services.h"

#include <string>

namespace genutil {

// Separates an editor's path from its switches in a stored preference.
inline constexpr char switchSeparator = 127;

// The editor's path without the switches that may follow it.
std::string editorWithoutSwitches(const std::string& stored);

// The file dialog that chooses an editor: it opens on the present one, or where that is missing on the one
// that comes with the system.
FileDialog editorDialog(GeneralProcedures& genProcs, const Record& prog, const std::string& editor);

} // namespace genutil
