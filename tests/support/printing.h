#pragma once

#include "support/recording_printer.h"
#include "support/viewer.h"

#include <string>

namespace genutil::fake {

inline std::string numbered(int first, int last) {
    std::string lines;
    for (int i = first; i <= last; ++i)
        lines += "line " + std::to_string(i) + "\n";
    return lines;
}

struct Printing : Viewer {
    RecordingPrinter printer;

    Printing() {
        desktop.thePrinter = &printer;
        desktop.time = 46000.375;
        prog->put(program::VersionText, std::string("8.2"));
        desktop.onPrint = [](PrintDialog&) { return true; };
    }
    // Shows the file, prints it, and tells the printer's document.
    frmFileView& print(const std::string& name, const std::string& bytes) {
        printer.pages.clear();
        frmFileView& form = view(1, file(name, bytes));
        form.mnu_Print.userChoose();
        return form;
    }
    void askForPages(int from, int to) {
        desktop.onPrint = [=](PrintDialog& dialog) {
            dialog.flags |= printflags::PageNumbers;
            dialog.fromPage = from;
            dialog.toPage = to;
            return true;
        };
    }
};

} // namespace genutil::fake
