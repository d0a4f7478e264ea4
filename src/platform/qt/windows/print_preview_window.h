#pragma once

#include "fileview/frm_print_preview.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// The page under the strip of controls that choose it.
class PrintPreviewWindow : public FormWindow {
public:
    explicit PrintPreviewWindow(const std::shared_ptr<frmPrintPreview>& form);
};

} // namespace genutil
