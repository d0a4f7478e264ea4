#pragma once

#include "fileview/frm_printing.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// How far a print run is: a small window of fixed size with a way to stop.
class PrintingWindow : public FormWindow {
public:
    explicit PrintingWindow(const std::shared_ptr<frmPrinting>& form);
};

} // namespace genutil
