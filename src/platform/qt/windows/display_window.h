#pragma once

#include "display/frm_display.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// The display settings: a frame for points, lines with their legend, and general items, side by side.
class DisplayWindow : public FormWindow {
public:
    explicit DisplayWindow(const std::shared_ptr<frmDisplay>& form);
};

} // namespace genutil
