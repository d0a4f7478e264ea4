#pragma once

#include "fileview/frm_file_view.h"
#include "platform/qt/form/form_window.h"

namespace genutil {

// The file viewer: a menu bar, the text, which takes the room there is, and the bars above and below it: the
// notice of a changed file, the words to find, and the state of the text. A file dropped on it is opened.
class FileViewWindow : public FormWindow {
public:
    explicit FileViewWindow(const std::shared_ptr<frmFileView>& form);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    std::shared_ptr<frmFileView> viewer() const;
};

} // namespace genutil
