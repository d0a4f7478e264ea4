#include "host/settings_commands.h"

#include "host/component_access.h"
#include "host/current_job.h"
#include "host/job_commands.h"
#include "host/main_form_object.h"
#include "host/window_visitor.h"

namespace kestal {

int runPreferences(const CommandLine&, const HostPtr& host, ComponentAccess& component) {
    const auto mainForm = makeScreenFormObject(host);
    component.editPreferences(CurrentJob(), mainForm.get());
    return exit_codes::Success;
}

int runDisplay(const CommandLine& line, const HostPtr& host, ComponentAccess& component) {
    const auto mainForm = makeScreenFormObject(host);
    component.editDisplay(openedJob(line, *host), mainForm.get());
    return exit_codes::Success;
}

int runHistory(const CommandLine&, const HostPtr&, ComponentAccess& component) {
    component.showHistory();
    return runUntilClosed();
}

} // namespace kestal
