#pragma once

#include "hostif/printer.h"

#include <memory>
#include <string>

class QWidget;

namespace genutil {

// A printer that writes a PDF file, whole or not at all. The path may be set until the document begins.
std::unique_ptr<Printer> makePdfPrinter(const std::string& path);

// The system's printers, and the PDF file as one of them.
class SystemPrinter : public Printer {
public:
    // Asks the user; False when cancelled.
    virtual bool ask(QWidget* owner, PrintDialog& dialog) = 0;
};
std::unique_ptr<SystemPrinter> makeSystemPrinter();

} // namespace genutil
