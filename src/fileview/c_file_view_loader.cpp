#include "fileview/c_file_view_loader.h"

namespace genutil {

void cFileViewLoader::LoadFileViewForm(bool instantHelp, bool setModal, std::int16_t ViewMode,
    const std::string& FileToView, RecordPtr& prog, const std::string& defEditor, bool* formCancelled,
    std::shared_ptr<ReportText>* rtbTextViewer) {
    run("LoadFileViewForm", [&] {
        if (!prog)
            throw Error(errors::ObjectNotSet, "No program object was passed");
        load(
            [&](frmFileView& form) {
                form.modal = setModal ? 1 : 0;
                form.MenuIhelp = instantHelp;
                form.ViewMode = ViewMode;
                form.FileToView = FileToView;
                form.Editor = defEditor;
                form.prog = prog->Clone();
            },
            [&](frmFileView& form) { form.Form_Setup(prog->get(program::HelpSource)); },
            [&](frmFileView& form) {
                if (form.prog->get(program::Changed))
                    prog = form.prog->Clone();
                if (rtbTextViewer)
                    *rtbTextViewer = std::shared_ptr<ReportText>(form.shared_from_this(), &form.rtbViewText);
                if (formCancelled)
                    *formCancelled = form.Cancelled;
            });
    });
}

} // namespace genutil
