#include "platform/qt/windows/form_views.h"

#include "hostif/error.h"
#include "platform/qt/windows/display_window.h"
#include "platform/qt/windows/file_view_window.h"
#include "platform/qt/windows/internal_browser_window.h"
#include "platform/qt/windows/job_list_window.h"
#include "platform/qt/windows/ls_options_window.h"
#include "platform/qt/windows/ls_save_options_window.h"
#include "platform/qt/windows/preferences_window.h"
#include "platform/qt/windows/print_preview_window.h"
#include "platform/qt/windows/printing_window.h"
#include "platform/qt/windows/progress_window.h"

namespace genutil {
namespace {

template<class Window, class FormClass>
FormWindow* make(const std::shared_ptr<Form>& form) {
    const auto known = std::dynamic_pointer_cast<FormClass>(form);
    if (!known)
        throw Error(
            errors::InternalError, "The form named " + form->name() + " is of another class than its window");
    return new Window(known);
}

} // namespace

FormViews standardFormViews() {
    return {
        {"frmProgress", make<ProgressWindow, frmProgress>},
        {"frmFileView", make<FileViewWindow, frmFileView>},
        {"frmPrintPreview", make<PrintPreviewWindow, frmPrintPreview>},
        {"frmPrinting", make<PrintingWindow, frmPrinting>},
        {"frmJobList", make<JobListWindow, frmJobList>},
        {"frmLS_Options", make<LSOptionsWindow, frmLS_Options>},
        {"frmInternal_Browser", make<InternalBrowserWindow, frmInternal_Browser>},
        {"frmDefaults", make<PreferencesWindow, frmDefaults>},
        {"frmDisplay", make<DisplayWindow, frmDisplay>},
        {"frmLS_SaveOptions", make<LSSaveOptionsWindow, frmLS_SaveOptions>},
    };
}

FormWindow* makeFormWindow(const FormViews& views, const std::shared_ptr<Form>& form) {
    const auto view = views.find(form->name());
    if (view == views.end())
        throw Error(errors::InternalError, "No window is known for the form " + form->name());
    return view->second(form);
}

} // namespace genutil
