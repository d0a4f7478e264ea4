#pragma once

#include "lsoptions/frm_ls_save_options.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// How the points of an adjusted network are saved; what depends on a choice stands indented below it.
class LSSaveOptionsWindow : public FormWindow {
public:
    explicit LSSaveOptionsWindow(const std::shared_ptr<frmLS_SaveOptions>& form);
};

} // namespace genutil
