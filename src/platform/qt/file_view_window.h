#pragma once

#include "fileview/frm_file_view.h"
#include "platform/qt/form_window.h"

namespace genutil {

// The file viewer: a menu bar and the text, which fills the rest.
class FileViewWindow : public FormWindow {
public:
    explicit FileViewWindow(const std::shared_ptr<frmFileView>& form);
};

} // namespace genutil
