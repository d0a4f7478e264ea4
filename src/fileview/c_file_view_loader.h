#pragma once

#include "fileview/frm_file_view.h"
#include "frame/loader.h"

#include <cstdint>
#include <memory>
#include <string>

namespace genutil {

// Shows the file viewer for the host.
class cFileViewLoader : public FormLoader<frmFileView> {
public:
    explicit cFileViewLoader(Component& component) : FormLoader(component, "cFileViewLoader") {}

    // Shows FileToView by the rules of ViewMode, modally when setModal. On return `prog` is replaced by a
    // copy of the form's program object if that has changed; `formCancelled` (may be null) says whether the
    // user cancelled; `rtbTextViewer` (may be null) receives the viewer's text control, so that the host can
    // write into an open viewer.
    void LoadFileViewForm(bool instantHelp, bool setModal, std::int16_t ViewMode,
        const std::string& FileToView, RecordPtr& prog, const std::string& defEditor,
        bool* formCancelled = nullptr, std::shared_ptr<ReportText>* rtbTextViewer = nullptr);
};

} // namespace genutil
