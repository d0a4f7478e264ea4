#pragma once

#include "host/services.h"

#include <k_genutil.h>

#include <stdexcept>
#include <string>

namespace kestal {

class CurrentJob;

/// A refusal of the component, or its absence: the text is fit for the user.
class ComponentError : public std::runtime_error {
public:
    explicit ComponentError(const std::string& text) : std::runtime_error(text), reason_(text) {}
    /// A call that failed with an error number (0: with another result), and why.
    ComponentError(const std::string& text, int number, std::string reason)
        : std::runtime_error(text), number_(number), reason_(std::move(reason)) {}
    int number() const { return number_; }
    /// Without what was being done.
    const std::string& reason() const { return reason_; }

private:
    int number_ = 0;
    std::string reason_;
};

/// What the least-squares options are read from and stored in.
namespace ls_modes {
inline constexpr std::int16_t Preferences = 1;
inline constexpr std::int16_t Page = 2;      ///< the header record of a data page
inline constexpr std::int16_t Header = 3;    ///< the first header record, without the spatial observations
inline constexpr std::int16_t JobAndSet = 4; ///< the first header record
} // namespace ls_modes

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
    /// Throws what the component says about a failed call: the procedure that failed and, of what it has
    /// reported meanwhile, the description that tells most.
    void check(HRESULT result, const std::string& call) const;

    /// The preferred editor: a command line, or "" for none.
    std::string defaultEditor() const;

    /// Shows a file in the viewer, and waits until it is closed if `modal`. Without an editor's command line
    /// the viewer offers none.
    void viewFile(
        const std::string& file, std::int16_t mode, bool modal, const std::string& editorCommandLine);
    void viewFile(const std::string& file, std::int16_t mode, bool modal) {
        viewFile(file, mode, modal, defaultEditor());
    }

    /// Shows the list of jobs of the current job's folder, or of the data folder while no job is open, and
    /// waits until it is closed. True when the user has chosen another job, which is then in `selected`.
    /// `mainForm` places the dialog (main_form_object.h). What could not be read is in the host's
    /// readingProblems.
    bool listJobs(JobObject& selected, const CurrentJob& current, IDispatch* mainForm);

    /// Shows the least-squares options and waits until they are closed. True when they were saved: the
    /// preferences to the settings, the others to the job, which leaves the preferences as they are.
    /// `dataMode` selects the page of ls_modes::Page and is 0 otherwise.
    bool editLsOptions(std::int16_t mode, std::int16_t dataMode, const CurrentJob& current);
    /// The same for what is done with the points of an adjusted network: the job's options, or the
    /// preferences while no job is open.
    bool editPointSave(const CurrentJob& current);

    /// Shows the preferences and waits until they are closed. What they hand back is the host's from then on,
    /// in the settings and in the session. True after OK. `mainForm` as in listJobs.
    bool editPreferences(const CurrentJob& current, IDispatch* mainForm);
    /// Shows what the plot of a job shows and waits until that is closed. True after OK; the marks are then
    /// the host's, and stored.
    bool editDisplay(const CurrentJob& current, IDispatch* mainForm);
    /// Shows the history of the product.
    void showHistory();

private:
    void registerHostClasses();

    HostPtr host_;
    k_genutil::Server server_;
    std::vector<DWORD> cookies_;
};

/// The library beside the executable: ../lib/libk_genutil.so.
std::string ownLibraryPath();

} // namespace kestal
