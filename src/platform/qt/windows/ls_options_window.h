#pragma once

#include "lsoptions/frm_ls_options.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// The least-squares options: the standard deviations as a table, the limits and confidence levels beside it,
// the general settings below.
class LSOptionsWindow : public FormWindow {
public:
    explicit LSOptionsWindow(const std::shared_ptr<frmLS_Options>& form);
};

} // namespace genutil
