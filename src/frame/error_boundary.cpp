#include "frame/error_boundary.h"

#include "text/ascii.h"

namespace genutil {

void GenUtil::ReportError(const std::string& description, const std::string& procedure) {
    ErrorHandler& handler = component_.errHandler();
    if (text::equalsIgnoringCase(procedure, "REACTIVATE") || handler.SkipNextReport())
        handler.setSkipNextReport(false);
    else
        handler.ReportProcError(description, procedure, false);
}

void reportAndRaise(Component& component, const std::string& procedure) {
    const Error error = toError(std::current_exception());
    try {
        GenUtil(component).ReportError(error.description(), procedure);
    } catch (...) {
        // The first error is the one that the caller must see.
    }
    throw Error(error.number(), standardDescription(error.number()), procedure);
}

void reportEvent(Component& component, const std::string& handler) noexcept {
    try {
        const Error error = toError(std::current_exception());
        try {
            component.errHandler().ReportEventError(error.description(), handler);
        } catch (...) {
            const Error reason = toError(std::current_exception());
            component.desktop().ask({.text = error.description() + "\n\n" + handler +
                                             "\n\nThe error could not be reported: " + reason.description(),
                .icon = Icon::Critical});
        }
    } catch (...) {
        // Neither the host nor the desktop can be reached, and an event has no caller to tell.
    }
}

} // namespace genutil
