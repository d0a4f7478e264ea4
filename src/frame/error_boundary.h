#pragma once

#include "frame/component.h"
#include "hostif/error.h"

#include <string>
#include <type_traits>
#include <utility>

// The component's error protocol. Every procedure and every event handler runs inside one of the two
// boundaries below; nothing else catches, the few local handlers that the dialogs' rules name excepted.
namespace genutil {

// The reporter. "REACTIVATE" as the procedure name (in any case) only switches reporting back on; otherwise
// the error is reported through the host's error object unless that asks, once, to skip the next report.
class GenUtil {
public:
    explicit GenUtil(Component& component) : component_(component) {}
    void ReportError(const std::string& description, const std::string& procedure);

private:
    Component& component_;
};

// Reports the exception being handled and throws it again as an Error with the same number, the procedure's
// name as source and the number's standard description. A report that fails does not hide the error: it is
// left out.
[[noreturn]] void reportAndRaise(Component& component, const std::string& procedure);

// Reports the exception being handled through the host's error object. When that cannot be had, the user is
// told in a message box, so that no failure is silent. Never throws.
void reportEvent(Component& component, const std::string& handler) noexcept;

// Runs a procedure: one that other code calls and that hands its errors to its caller. `makeName` returns its
// qualified name and is asked only when something has failed: some procedures are called a million times.
template<class MakeName, class Body>
std::invoke_result_t<Body> procedure(Component& component, MakeName&& makeName, Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        reportAndRaise(component, makeName());
    }
}

// Runs an event handler: its errors end here.
template<class MakeName, class Body>
void eventHandler(Component& component, MakeName&& makeName, Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {
        reportEvent(component, makeName());
    }
}

// The object, or ObjectNotSet naming what is missing.
template<class Pointer>
auto& required(const Pointer& object, std::string_view what) {
    if (!object)
        throw Error(errors::ObjectNotSet, "Object reference is not set: " + std::string(what));
    return *object;
}

} // namespace genutil
