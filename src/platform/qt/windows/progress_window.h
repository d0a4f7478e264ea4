#pragma once

#include "platform/qt/form/form_window.h"
#include "progress/frm_progress.h"

namespace genutil {

// The gauge: a small window of fixed size above the host's, which leaves the focus where it is.
class ProgressWindow : public FormWindow {
public:
    explicit ProgressWindow(const std::shared_ptr<frmProgress>& form);
};

} // namespace genutil
