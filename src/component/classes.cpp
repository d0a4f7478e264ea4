#include "browser/c_internal_browser_loader.h"
#include "component/class_list.h"
#include "component/dual_object.h"
#include "component/form_object.h"
#include "component/host_database.h"
#include "component/host_object.h"
#include "display/c_display_loader.h"
#include "fileview/c_file_view_loader.h"
#include "fileview/report_printing.h"
#include "frame/loader.h"
#include "joblist/c_job_list_loader.h"
#include "joblist/job_listing.h"
#include "lsoptions/c_ls_opts_loader.h"
#include "preferences/c_defaults_loader.h"
#include "progress/c_progress.h"

#include <algorithm>

namespace genutil {
namespace {

using k_genutil::Ref;

bool truth(const VARIANT_BOOL* flag) {
    return *flag != VARIANT_FALSE;
}

std::string textOf(const BSTR* text) {
    return k_genutil::toUtf8(*text);
}

void replace(BSTR* text, const std::string& by) {
    k_genutil::Text written(by);
    std::swap(*text, *written.inOut());
}

// Whether every required argument pointer is valid.
template<class... Pointers>
bool allGiven(const Pointers*... pointers) {
    return ((pointers != nullptr) && ...);
}

// The answer to a call with an invalid one.
HRESULT noPlace() {
    clearErrorInfo();
    return E_POINTER;
}

// A public class: the dual interface over the loader that does the work.
template<class Interface, class Core>
class PublicObject : public DualObject<Interface> {
public:
    template<class... Arguments>
    explicit PublicObject(Arguments&&... arguments) : core_(std::forward<Arguments>(arguments)...) {}

    HRESULT STDMETHODCALLTYPE get_ClassActive(VARIANT_BOOL* value) override {
        if (!value)
            return noPlace();
        return perform([&] { *value = core_.ClassActive ? VARIANT_TRUE : VARIANT_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE put_ClassActive(VARIANT_BOOL value) override {
        return perform([&] { core_.ClassActive = value != VARIANT_FALSE; });
    }

protected:
    // Runs a member; the object outlives it even when the host lets go of it meanwhile.
    template<class Body>
    HRESULT perform(Body&& body) {
        const auto self = Ref<IUnknown>::share(this);
        return guarded(std::forward<Body>(body));
    }
    HRESULT blank() {
        return perform([&] { core_.SetBlank(); });
    }

    Core core_;
};

// A public object with a further interface beside the automation one, and those that it has grown out of.
template<class Interface, class Core, class Further, class... Earlier>
class ExtendedObject : public PublicObject<Interface, Core>, public Further {
    using Base = PublicObject<Interface, Core>;

public:
    using Base::Base;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return Base::QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return Base::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Base::Release(); }

private:
    bool tellsErrorsOf(REFIID iid) const override { return isFurther(iid) || Base::tellsErrorsOf(iid); }
    void* find(REFIID iid) override { return isFurther(iid) ? static_cast<Further*>(this) : Base::find(iid); }
    static bool isFurther(REFIID iid) {
        return iid == k_genutil::iidOf<Further> || ((iid == k_genutil::iidOf<Earlier>) || ...);
    }
};

class ProgressObject final : public PublicObject<k_genutil::_cProgress, cProgress> {
public:
    using PublicObject::PublicObject;
    HRESULT STDMETHODCALLTYPE Gauge(BSTR* incrNo, short perCent) override {
        return allGiven(incrNo) ? perform([&] { core_.Gauge(textOf(incrNo), perCent); }) : noPlace();
    }
    HRESULT STDMETHODCALLTYPE GaugeRemove() override {
        return perform([&] { core_.GaugeRemove(); });
    }
    HRESULT STDMETHODCALLTYPE GaugeSetup(BSTR* title, BSTR* incrLabel) override {
        return allGiven(title, incrLabel)
                   ? perform([&] { core_.GaugeSetup(textOf(title), textOf(incrLabel)); })
                   : noPlace();
    }
};

// Shows reports, and prints them without the viewer through a further interface.
class FileViewObject final
    : public ExtendedObject<k_genutil::_cFileViewLoader, cFileViewLoader, k_genutil::_ReportPrinting> {
public:
    explicit FileViewObject(Component& component) : ExtendedObject(component), printing_(component) {}

    HRESULT STDMETHODCALLTYPE LoadFileViewForm(VARIANT_BOOL* instantHelp, VARIANT_BOOL* setModal,
        short* ViewMode, BSTR* FileToView, IDispatch** prog, BSTR* defEditor, VARIANT_BOOL* formCancelled,
        IDispatch** rtbTextViewer) override {
        if (!allGiven(instantHelp, setModal, ViewMode, FileToView, prog, defEditor))
            return noPlace();
        return perform([&] {
            RecordPtr program = recordOf(*prog, "prog");
            bool cancelled = false;
            std::shared_ptr<ReportText> viewer;
            core_.LoadFileViewForm(truth(instantHelp), truth(setModal), *ViewMode, textOf(FileToView),
                program, textOf(defEditor), &cancelled, rtbTextViewer ? &viewer : nullptr);
            assignObject(prog, objectOf(program.get()));
            if (formCancelled)
                *formCancelled = cancelled ? VARIANT_TRUE : VARIANT_FALSE;
            if (rtbTextViewer && viewer)
                assignObject(rtbTextViewer, automationObject(*viewer).get());
        });
    }
    HRESULT STDMETHODCALLTYPE SetBlank() override { return blank(); }

    HRESULT STDMETHODCALLTYPE PrintToPdf(BSTR* FileToView, BSTR* pdfFile, IDispatch** prog, short orientation,
        LONG fromLine, LONG toLine, LONG fromPage, LONG toPage, short copies, LONG* pages,
        BSTR* cutOff) override {
        if (!allGiven(FileToView, pdfFile, prog, pages, cutOff))
            return noPlace();
        return perform([&] {
            PdfOrder order{.file = textOf(FileToView),
                .pdfFile = textOf(pdfFile),
                .orientation = orientationOf(orientation),
                .fromLine = place(fromLine, "line"),
                .range = {.fromPage = place(fromPage, "page"), .copies = copies}};
            if (toLine != 0)
                order.toLine = place(toLine, "line");
            if (toPage != 0)
                order.range.toPage = place(toPage, "page");
            const auto printed = printing_.PrintToPdf(order, recordOf(*prog, "prog"));
            replace(cutOff, printed.cutOff);
            *pages = LONG(printed.pages);
        });
    }

private:
    static std::size_t place(LONG number, const char* what) {
        if (number < 0)
            throw Error(errors::InvalidCall, std::string("The number of a ") + what + " is below 0");
        return std::size_t(number);
    }
    static std::optional<PageOrientation> orientationOf(short number) {
        if (number < 0 || number > 2)
            throw Error(errors::InvalidCall, "The orientation must be 0, 1 (portrait) or 2 (landscape)");
        return number == 0 ? std::nullopt : std::optional(PageOrientation(number));
    }

    ReportPrinting printing_;
};

class InternalBrowserObject final
    : public PublicObject<k_genutil::_cInternalBrowserLoader, cInternalBrowserLoader> {
public:
    using PublicObject::PublicObject;
    HRESULT STDMETHODCALLTYPE LoadForm(BSTR* HTMLfile) override {
        return allGiven(HTMLfile) ? perform([&] { core_.LoadForm(textOf(HTMLfile)); }) : noPlace();
    }
};

// Lists jobs in the dialog, and without it through a further interface.
class JobListObject final : public ExtendedObject<k_genutil::_cJobListLoader, cJobListLoader,
                                k_genutil::_JobListing2, k_genutil::_JobListing> {
public:
    explicit JobListObject(Component& component) : ExtendedObject(component), listing_(component) {}

    HRESULT STDMETHODCALLTYPE LoadJobListForm(IDispatch** jobSelected, IDispatch** IHelp, IDispatch** prog,
        IDispatch** jobDetails, IDispatch** currentJob, IDispatch** mainForm, VARIANT_BOOL* showExt,
        IDispatch** jobDB, IDispatch** jobDetailsRset, IDispatch** jobCfg, IDispatch** jobGeneral,
        VARIANT_BOOL* result) override {
        if (!allGiven(jobSelected, IHelp, prog, jobDetails, currentJob, mainForm, showExt, jobDB,
                jobDetailsRset, jobCfg, jobGeneral, result))
            return noPlace();
        return perform([&] {
            CurrentJob current;
            if (*currentJob)
                current = {recordOf(*currentJob, "currentJob"), recordOf(*jobDetails, "jobDetails"),
                    recordOf(*jobCfg, "jobCfg"), recordOf(*jobGeneral, "jobGeneral"), databaseOf(*jobDB),
                    recordsetOf(*jobDetailsRset, "jobDetailsRset")};
            const bool chosen =
                core_.LoadJobListForm(recordOf(*jobSelected, "jobSelected"), recordOf(*IHelp, "IHelp"),
                    recordOf(*prog, "prog"), current, recordOf(*mainForm, "mainForm"), truth(showExt));
            *result = chosen ? VARIANT_TRUE : VARIANT_FALSE;
        });
    }
    HRESULT STDMETHODCALLTYPE SetBlank() override { return blank(); }

    HRESULT STDMETHODCALLTYPE ReadFolder(BSTR* folder, IDispatch** prog, LONG* jobs) override {
        return allGiven(folder, prog, jobs)
                   ? perform([&] { *jobs = listing_.ReadFolder(textOf(folder), recordOf(*prog, "prog")); })
                   : noPlace();
    }
    HRESULT STDMETHODCALLTYPE Write(
        BSTR* format, BSTR* sortColumn, VARIANT_BOOL allColumns, BSTR* text) override {
        return WriteWith(format, sortColumn, allColumns != VARIANT_FALSE ? AllColumns : 0, text);
    }
    HRESULT STDMETHODCALLTYPE WriteWith(BSTR* format, BSTR* sortColumn, LONG options, BSTR* text) override {
        return allGiven(format, sortColumn, text) ? perform([&] {
            replace(text, listing_.Write(textOf(format), textOf(sortColumn),
                              {.allColumns = (options & AllColumns) != 0,
                                  .fileColumns = (options & FileColumns) != 0,
                                  .isoDates = (options & IsoDates) != 0}));
        })
                                                  : noPlace();
    }

private:
    JobListing listing_;
};

class DefaultsObject final : public PublicObject<k_genutil::_cDefaultsLoader, cDefaultsLoader> {
public:
    using PublicObject::PublicObject;
    HRESULT STDMETHODCALLTYPE LoadDefaultsForm(IDispatch** IHelp, IDispatch** prog, IDispatch** currentJob,
        IDispatch** mainForm, IDispatch** genPrefs, IDispatch** LSOptPrefs, VARIANT_BOOL* result) override {
        if (!allGiven(IHelp, prog, currentJob, mainForm, genPrefs, LSOptPrefs, result))
            return noPlace();
        return perform([&] {
            RecordPtr program = recordOf(*prog, "prog"), preferences = recordOf(*genPrefs, "genPrefs"),
                      options = recordOf(*LSOptPrefs, "LSOptPrefs");
            const bool accepted = core_.LoadDefaultsForm(recordOf(*IHelp, "IHelp"), program,
                recordOf(*currentJob, "currentJob"), recordOf(*mainForm, "mainForm"), preferences, options);
            assignObject(prog, objectOf(program.get()));
            assignObject(genPrefs, objectOf(preferences.get()));
            assignObject(LSOptPrefs, objectOf(options.get()));
            *result = accepted ? VARIANT_TRUE : VARIANT_FALSE;
        });
    }
    HRESULT STDMETHODCALLTYPE SetBlank() override { return blank(); }
};

// An optional object argument: Nothing where it is omitted.
IDispatch* optional(IDispatch** argument) {
    return argument ? *argument : nullptr;
}

// What both dialogs of least-squares options take in and hand back.
class LSArguments {
public:
    bool saved;
    RecordPtr options;

    LSArguments(VARIANT_BOOL* optionsSaved, IDispatch** LSOptPref)
        : saved(truth(optionsSaved)), options(recordOf(*LSOptPref, "LSOptPref")), savedPlace_(optionsSaved),
          optionsPlace_(LSOptPref) {}

    void handBack() const {
        *savedPlace_ = saved ? VARIANT_TRUE : VARIANT_FALSE;
        assignObject(optionsPlace_, objectOf(options.get()));
    }

private:
    VARIANT_BOOL* savedPlace_;
    IDispatch** optionsPlace_;
};

class LS_OptsObject final : public PublicObject<k_genutil::_cLS_OptsLoader, cLS_OptsLoader> {
public:
    using PublicObject::PublicObject;
    HRESULT STDMETHODCALLTYPE LoadLSOptionsForm(VARIANT_BOOL* instantHelp, short* optionsMode,
        VARIANT_BOOL* optionsSaved, IDispatch** LSOptPref, IDispatch** prog, IDispatch** dataHeaderTable,
        IDispatch** LSOptPrefDefaults, short* dataNumMode) override {
        if (!allGiven(instantHelp, optionsMode, optionsSaved, LSOptPref, prog))
            return noPlace();
        return perform([&] {
            LSArguments arguments(optionsSaved, LSOptPref);
            core_.LoadLSOptionsForm(truth(instantHelp), *optionsMode, arguments.saved, arguments.options,
                recordOf(*prog, "prog"), recordsetOf(optional(dataHeaderTable), "dataHeaderTable"),
                recordOf(optional(LSOptPrefDefaults), "LSOptPrefDefaults"),
                dataNumMode ? *dataNumMode : short{0});
            arguments.handBack();
        });
    }
    HRESULT STDMETHODCALLTYPE SetBlank() override { return blank(); }
};

class DisplayObject final : public PublicObject<k_genutil::_cDisplayLoader, cDisplayLoader> {
public:
    using PublicObject::PublicObject;
    HRESULT STDMETHODCALLTYPE LoadDisplaySettingsForm(IDispatch** IHelp, IDispatch** mainForm,
        IDispatch** prog, IDispatch** jobPlot, IDispatch** jobCfg, IDispatch** jobGeneral,
        VARIANT_BOOL* alphasExist, VARIANT_BOOL* result) override {
        if (!allGiven(IHelp, mainForm, prog, jobPlot, jobCfg, jobGeneral, alphasExist, result))
            return noPlace();
        return perform([&] {
            const bool accepted = core_.LoadDisplaySettingsForm(recordOf(*IHelp, "IHelp"),
                recordOf(*mainForm, "mainForm"), recordOf(*prog, "prog"), recordOf(*jobCfg, "jobCfg"),
                recordOf(*jobGeneral, "jobGeneral"), truth(alphasExist));
            *result = accepted ? VARIANT_TRUE : VARIANT_FALSE;
        });
    }
    HRESULT STDMETHODCALLTYPE SetBlank() override { return blank(); }
};

class LS_SaveOptsObject final : public PublicObject<k_genutil::_cLS_SaveOptsLoader, cLS_SaveOptsLoader> {
public:
    using PublicObject::PublicObject;
    HRESULT STDMETHODCALLTYPE LoadLSSaveOptsForm(VARIANT_BOOL* instantHelp, short* optionsMode,
        VARIANT_BOOL* optionsSaved, IDispatch** LSOptPref, IDispatch** prog, IDispatch** dataHeaderTable,
        IDispatch** LSOptPrefDefaults) override {
        if (!allGiven(instantHelp, optionsMode, optionsSaved, LSOptPref, prog))
            return noPlace();
        return perform([&] {
            LSArguments arguments(optionsSaved, LSOptPref);
            core_.LoadLSSaveOptsForm(*optionsMode, arguments.saved, arguments.options,
                recordOf(*prog, "prog"), recordsetOf(optional(dataHeaderTable), "dataHeaderTable"),
                recordOf(optional(LSOptPrefDefaults), "LSOptPrefDefaults"));
            arguments.handBack();
        });
    }
    HRESULT STDMETHODCALLTYPE SetBlank() override { return blank(); }
};

Ref<IUnknown> own(IDispatch* fresh) {
    return Ref<IUnknown>::adopt(fresh);
}

namespace names = k_genutil::classes;

} // namespace

const std::array<PublicClass, 8> publicClasses{{
    {names::cInternalBrowserLoader, [](Component& c) { return own(new InternalBrowserObject(c)); }},
    {names::cFileViewLoader, [](Component& c) { return own(new FileViewObject(c)); }},
    {names::cProgress, [](Component& c) { return own(new ProgressObject(c)); }},
    {names::cJobListLoader, [](Component& c) { return own(new JobListObject(c)); }},
    {names::cDefaultsLoader, [](Component& c) { return own(new DefaultsObject(c)); }},
    {names::cLS_OptsLoader, [](Component& c) { return own(new LS_OptsObject(c)); }},
    {names::cDisplayLoader, [](Component& c) { return own(new DisplayObject(c)); }},
    {names::cLS_SaveOptsLoader, [](Component& c) { return own(new LS_SaveOptsObject(c)); }},
}};

const PublicClass* findPublicClass(const CLSID& clsid) {
    const auto found =
        std::ranges::find(publicClasses, clsid, [](const PublicClass& c) { return c.name.clsid; });
    return found == publicClasses.end() ? nullptr : &*found;
}

} // namespace genutil
