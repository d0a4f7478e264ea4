#pragma once

#include "frame/dialog_form.h"
#include "hostif/controls.h"
#include "hostif/web_view.h"

#include <string>

namespace genutil {

// A window with a page and a Close button, always modeless. The page takes all of it but a strip at the
// bottom, which holds the button and, while they are wanted, the field to find words with and what there is
// to be said. Lengths are twips.
class frmInternal_Browser : public DialogForm {
public:
    explicit frmInternal_Browser(Component& component);

    std::string HTMLpath; // the page: a file's path or an address

    WebView webHistory_viewer;
    Label lblFind;
    TextBox txtFind;
    Button cmdFindNext, cmdFindPrevious;
    Label lblStatus;
    Button cmdClose;

    // The page's menu; its keys act in the whole window.
    MenuItem mnuPage;
    MenuItem mnuBack, mnuForward, mnuReload, mnuBreakPage;
    MenuItem mnuCopy, mnuCopyLink, mnuSelectAll, mnuBreakText;
    MenuItem mnuFind, mnuFindNext, mnuFindPrevious, mnuBreakFind;
    MenuItem mnuZoomIn, mnuZoomOut, mnuZoomNormal, mnuBreakZoom;
    MenuItem mnuClose;

    // Shows the window with the page: five sixths of the screen, or all of a small screen.
    void Form_Setup(const std::string& page);

private:
    void connectPage();
    void connectMenu();
    void connectFinding();
    void layOut();
    void say(const std::string& text);
    void zoom(int steps);
    void showFinding(bool shown);
    void find(bool backwards);

    int zoomStep_ = 0;
};

} // namespace genutil
