#pragma once

#include "platform/qt/form/form_window.h"
#include "preferences/frm_defaults.h"

namespace genutil {

// The preferences: two pages of groups above the buttons.
class PreferencesWindow : public FormWindow {
public:
    explicit PreferencesWindow(const std::shared_ptr<frmDefaults>& form);
};

} // namespace genutil
