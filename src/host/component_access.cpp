#include "host/component_access.h"

#include "host/class_factory.h"
#include "host/settings_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace kestal {
namespace {

using k_genutil::ActivationError;
using k_genutil::Server;

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

std::string errorText(const Server& server) {
    Ref<IErrorInfo> information;
    if (!server.getErrorInfo ||
        server.getErrorInfo(0, reinterpret_cast<IErrorInfo**>(information.out())) != S_OK)
        return {};
    k_genutil::Text description, source;
    information->GetDescription(description.inOut());
    information->GetSource(source.inOut());
    const std::string from = source.utf8();
    return description.utf8() + (from.empty() ? "" : " (" + from + ")");
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
        const std::string reason = errorText(server);
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
    if (SUCCEEDED(result))
        return;
    const std::string reason = errorText(server_);
    throw ComponentError(call + " has failed: " + (reason.empty() ? codeText(result) : reason));
}

std::string ComponentAccess::defaultEditor() const {
    return readSetting(host_->paths.settings.toStdString(), "Kestal", "DefaultEditor", "");
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

} // namespace kestal
