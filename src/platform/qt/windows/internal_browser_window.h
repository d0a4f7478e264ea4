#pragma once

#include "browser/frm_internal_browser.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// A page with the Close button below it.
class InternalBrowserWindow : public FormWindow {
public:
    explicit InternalBrowserWindow(const std::shared_ptr<frmInternal_Browser>& form);
};

} // namespace genutil
