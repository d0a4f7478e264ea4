#pragma once

#include "hostif/printer.h"

#include <vector>

class QWidget;

namespace genutil {

// Asks for a printer, its settings and the pages. What the chosen printer cannot do is not offered, and a
// setting that is 0 stays with the printer. The PDF file's path is its port. False when cancelled; `dialog`
// is then as it was.
bool askForPrinter(QWidget* owner, const std::vector<PrinterDevice>& installed, PrintDialog& dialog);

} // namespace genutil
