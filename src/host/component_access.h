#pragma once

#include "host/services.h"

#include <k_genutil.h>

#include <stdexcept>
#include <string>

namespace kestal {

/// A refusal of the component, or its absence: the text is fit for the user.
class ComponentError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The component of this installation: found through its registration, which is renewed when it is missing or
/// names another copy than the one that came with this program; with the host's classes registered in it.
class ComponentAccess {
public:
    explicit ComponentAccess(const HostPtr& host);
    ~ComponentAccess();
    ComponentAccess(const ComponentAccess&) = delete;
    ComponentAccess& operator=(const ComponentAccess&) = delete;

    /// An object of a class by its programmatic identifier.
    template<class Interface>
    Ref<Interface> create(const char* progId) const {
        try {
            return k_genutil::createObject<Interface>(progId);
        } catch (const k_genutil::ActivationError& error) {
            throw ComponentError(error.what());
        }
    }
    /// Throws what the component says about a failed call.
    void check(HRESULT result, const std::string& call) const;

    /// The setting "DefaultEditor": a command line, or "" for none.
    std::string defaultEditor() const;

    /// Shows a file in the viewer, and waits until it is closed if `modal`. Without an editor's command line
    /// the viewer offers none.
    void viewFile(
        const std::string& file, std::int16_t mode, bool modal, const std::string& editorCommandLine);
    void viewFile(const std::string& file, std::int16_t mode, bool modal) {
        viewFile(file, mode, modal, defaultEditor());
    }

private:
    void registerHostClasses();

    HostPtr host_;
    k_genutil::Server server_;
    std::vector<DWORD> cookies_;
};

/// The library beside the executable: ../lib/libk_genutil.so.
std::string ownLibraryPath();

} // namespace kestal
