#include "host/component_access.h"

#include "host/class_factory.h"
#include "host/current_job.h"
#include "host/job_schema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <cstdio>

namespace kestal {
namespace {

using k_genutil::ActivationError;
using k_genutil::Server;

// Objects may come back from a call as others, so it gets references of its own.
Ref<IDispatch> shared(IDispatch* object) {
    return Ref<IDispatch>::share(object);
}

// The library that the registry file names for the component; "" when it is not registered.
std::string registeredLibrary() {
    const std::string entry = "class " + k_genutil::guidText(k_genutil::classes::cFileViewLoader.clsid);
    try {
        return k_genutil::registryValue(entry, "server", REGDB_E_CLASSNOTREG);
    } catch (const ActivationError&) {
        return {};
    }
}

bool sameFile(const std::string& a, const std::string& b) {
    const QString real = QFileInfo(QString::fromStdString(a)).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(QString::fromStdString(b)).canonicalFilePath();
}

struct ErrorText {
    std::string description;
    std::string source;
};

ErrorText errorText(const Server& server) {
    Ref<IErrorInfo> information;
    if (!server.getErrorInfo ||
        server.getErrorInfo(0, reinterpret_cast<IErrorInfo**>(information.out())) != S_OK)
        return {};
    k_genutil::Text description, source;
    information->GetDescription(description.inOut());
    information->GetSource(source.inOut());
    return {description.utf8(), source.utf8()};
}

std::string sentence(const ErrorText& text) {
    return text.description + (text.source.empty() ? "" : " (" + text.source + ")");
}

// The error number in a result, or 0.
int errorNumber(HRESULT result) {
    constexpr unsigned errorsOfObjects = 0x800A0000;
    const auto code = static_cast<unsigned>(result);
    return (code & 0xFFFF0000) == errorsOfObjects ? static_cast<int>(code & 0xFFFF) : 0;
}

std::string codeText(HRESULT result) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
    return code;
}

void registerLibrary(const std::string& path) {
    const Server server = Server::load(path);
    if (!server.registerServer)
        throw ComponentError("The library " + path + " cannot register itself");
    if (const HRESULT result = server.registerServer(); FAILED(result)) {
        const std::string reason = sentence(errorText(server));
        throw ComponentError(
            "The component cannot be registered: " + (reason.empty() ? codeText(result) : reason) +
            "\nSet K_GENUTIL_REGISTRY to the path of a registry file that can be written.");
    }
}

// Renews the registration where it is needed, and loads what is registered.
Server openComponent() {
    try {
        const std::string own = ownLibraryPath();
        const std::string registered = registeredLibrary();
        const bool ownExists = QFileInfo(QString::fromStdString(own)).isFile();
        if (ownExists && !sameFile(own, registered))
            registerLibrary(own);
        else if (registered.empty())
            throw ComponentError("The component is neither registered in " + k_genutil::registryPath() +
                                 " nor installed beside this program as " + own);
        return Server::forClass(k_genutil::classes::cFileViewLoader.clsid);
    } catch (const ActivationError& error) {
        throw ComponentError(std::string("The component cannot be loaded: ") + error.what());
    }
}

} // namespace

std::string ownLibraryPath() {
    const QDir program(QCoreApplication::applicationDirPath());
    return QDir::cleanPath(program.filePath("../lib/libk_genutil.so")).toStdString();
}

ComponentAccess::ComponentAccess(const HostPtr& host) : host_(host), server_(openComponent()) {
    if (!server_.registerClassObject || !server_.revokeClassObject)
        throw ComponentError("The component's library does not take the host's classes");
    registerHostClasses();
}

ComponentAccess::~ComponentAccess() {
    for (const DWORD cookie : cookies_)
        server_.revokeClassObject(cookie);
}

void ComponentAccess::registerHostClasses() {
    constexpr DWORD inProcess = 1;
    constexpr DWORD multipleUse = 1;
    for (const ServiceClass& service : serviceClasses()) {
        const auto factory = Ref<ClassFactory>::adopt(
            new ClassFactory([host = host_, create = service.create] { return create(host); }));
        DWORD cookie = 0;
        check(server_.registerClassObject(service.name.clsid, factory.get(), inProcess, multipleUse, &cookie),
            std::string("Registering the class ") + service.name.progId);
        cookies_.push_back(cookie);
    }
}

void ComponentAccess::check(HRESULT result, const std::string& call) const {
    const std::vector<std::string> reports = std::exchange(host_->procedureReports, {});
    if (SUCCEEDED(result))
        return;
    ErrorText error = errorText(server_);
    if (const std::string* const origin = originOf(error.description, reports))
        error.description = *origin;
    if (error.description.empty())
        error.description = codeText(result);
    throw ComponentError(call + " has failed: " + sentence(error), errorNumber(result), error.description);
}

std::string ComponentAccess::defaultEditor() const {
    return host_->genPrefs->text("DefaultEditor");
}

void ComponentAccess::viewFile(
    const std::string& file, std::int16_t mode, bool modal, const std::string& editorCommandLine) {
    const auto loader = create<k_genutil::_cFileViewLoader>(k_genutil::classes::cFileViewLoader.progId);
    VARIANT_BOOL instantHelp = host_->instantHelpOn ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL setModal = modal ? VARIANT_TRUE : VARIANT_FALSE;
    k_genutil::Text fileToView(file);
    k_genutil::Text editor(editorCommandLine);
    // Where the viewer has changed it, the program object comes back as another one.
    auto prog = Ref<IDispatch>::share(host_->prog.get());
    check(loader->LoadFileViewForm(&instantHelp, &setModal, &mode, fileToView.inOut(), prog.inOut(),
              editor.inOut(), nullptr, nullptr),
        "Showing " + (file.empty() ? "the viewer" : file));
    if (prog.get() != host_->prog.get())
        host_->takeProgram(prog.get());
}

bool ComponentAccess::listJobs(JobObject& selected, const CurrentJob& current, IDispatch* mainForm) {
    const auto loader = create<k_genutil::_cJobListLoader>(k_genutil::classes::cJobListLoader.progId);
    auto jobSelected = shared(&selected), prog = shared(host_->prog.get()), form = shared(mainForm);
    auto job = shared(current.job.get()), details = shared(current.jobDetails.get());
    auto configuration = shared(current.jobCfg.get()), general = shared(current.jobGeneral.get());
    auto database = current.database, recordset = current.detailsRset;
    auto instantHelp = makeInstantHelp(host_);
    VARIANT_BOOL showExt = truthOf(host_->genPrefs->value("ShowExtension")) ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL chosen = VARIANT_FALSE;
    host_->readingProblems.clear();
    check(loader->LoadJobListForm(jobSelected.inOut(), instantHelp.inOut(), prog.inOut(), details.inOut(),
              job.inOut(), form.inOut(), &showExt, database.inOut(), recordset.inOut(), configuration.inOut(),
              general.inOut(), &chosen),
        "Listing the jobs");
    if (chosen != VARIANT_FALSE && jobSelected.get() != &selected)
        selected.copyFrom(jobSelected.get());
    return chosen != VARIANT_FALSE;
}

namespace {

// What both dialogs of the least-squares options are called with. Objects may come back as others, so the
// call gets references of its own.
struct LsOptionsCall {
    LsOptionsCall(Host& owner, std::int16_t optionsMode, const CurrentJob& current)
        : host(owner), mode(optionsMode) {
        if (mode != ls_modes::Preferences)
            header =
                current.openOptions(mode == ls_modes::Page ? OptionRecords::OfPages : OptionRecords::OfJob);
    }
    // True when the options were saved; the preferences are then in the settings.
    bool finish() const {
        if (saved != VARIANT_FALSE && mode == ls_modes::Preferences)
            host.takeLsOptions(options.get());
        return saved != VARIANT_FALSE;
    }

    Host& host;
    std::int16_t mode;
    VARIANT_BOOL instantHelp = host.instantHelpOn ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL saved = VARIANT_FALSE;
    Ref<IDispatch> options = Ref<IDispatch>::share(host.lsOptions.get());
    Ref<IDispatch> defaults = Ref<IDispatch>::share(host.lsOptionDefaults.get());
    Ref<IDispatch> prog = Ref<IDispatch>::share(host.prog.get());
    Ref<IDispatch> header; // null: the preferences are edited
};

} // namespace

bool ComponentAccess::editLsOptions(std::int16_t mode, std::int16_t dataMode, const CurrentJob& current) {
    const auto loader = create<k_genutil::_cLS_OptsLoader>(k_genutil::classes::cLS_OptsLoader.progId);
    LsOptionsCall call(*host_, mode, current);
    check(loader->LoadLSOptionsForm(&call.instantHelp, &call.mode, &call.saved, call.options.inOut(),
              call.prog.inOut(), call.header.inOut(), call.defaults.inOut(), &dataMode),
        "Editing the least-squares options");
    return call.finish();
}

bool ComponentAccess::editPointSave(const CurrentJob& current) {
    const auto loader = create<k_genutil::_cLS_SaveOptsLoader>(k_genutil::classes::cLS_SaveOptsLoader.progId);
    LsOptionsCall call(*host_, current.isOpen() ? ls_modes::JobAndSet : ls_modes::Preferences, current);
    check(loader->LoadLSSaveOptsForm(&call.instantHelp, &call.mode, &call.saved, call.options.inOut(),
              call.prog.inOut(), call.header.inOut(), call.defaults.inOut()),
        "Editing the point-save options");
    return call.finish();
}

bool ComponentAccess::editPreferences(const CurrentJob& current, IDispatch* mainForm) {
    const auto loader = create<k_genutil::_cDefaultsLoader>(k_genutil::classes::cDefaultsLoader.progId);
    auto instantHelp = makeInstantHelp(host_);
    auto prog = shared(host_->prog.get()), job = shared(current.job.get()), form = shared(mainForm);
    auto preferences = shared(host_->genPrefs.get()), options = shared(host_->lsOptions.get());
    VARIANT_BOOL result = VARIANT_FALSE;
    const auto giveUp = qScopeGuard([this] { host_->abandonStore(); });
    check(loader->LoadDefaultsForm(instantHelp.inOut(), prog.inOut(), job.inOut(), form.inOut(),
              preferences.inOut(), options.inOut(), &result),
        "Editing the preferences");
    host_->takePreferences(preferences.get(), options.get(), prog.get());
    host_->placeListFolder(current.isOpen() ? current.job->text("JobPath") : "");
    return result != VARIANT_FALSE;
}

bool ComponentAccess::editDisplay(const CurrentJob& current, IDispatch* mainForm) {
    const auto loader = create<k_genutil::_cDisplayLoader>(k_genutil::classes::cDisplayLoader.progId);
    auto instantHelp = makeInstantHelp(host_);
    auto prog = shared(host_->prog.get()), form = shared(mainForm);
    Ref<IDispatch> plot; // is not looked at
    const auto recordOf = [](const Ref<RecordObject>& own, const RecordClass& recordClass) {
        return own ? shared(own.get()) : Ref<IDispatch>::adopt(new RecordObject(recordClass));
    };
    auto configuration = recordOf(current.jobCfg, records::jobCfg());
    auto general = recordOf(current.jobGeneral, records::jobGeneral());
    VARIANT_BOOL alphasExist = current.hasAlphaIds() ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL result = VARIANT_FALSE;
    const auto keepMarks = qScopeGuard([this] { host_->keepMarks(); });
    check(loader->LoadDisplaySettingsForm(instantHelp.inOut(), form.inOut(), prog.inOut(), plot.inOut(),
              configuration.inOut(), general.inOut(), &alphasExist, &result),
        "Editing the display settings");
    return result != VARIANT_FALSE;
}

void ComponentAccess::showHistory() {
    const QString page = host_->paths.helpPage("history.html");
    if (!QFileInfo(page).isFile())
        throw ComponentError("The history " + page.toStdString() + " is not installed");
    const auto loader =
        create<k_genutil::_cInternalBrowserLoader>(k_genutil::classes::cInternalBrowserLoader.progId);
    k_genutil::Text file(page.toStdString());
    check(loader->LoadForm(file.inOut()), "Showing the history");
}

} // namespace kestal
