#pragma once

#include "frame/error_boundary.h"

#include <string>
#include <string_view>
#include <utility>

// The error rules that the reading of jobs adds to the component's own.
namespace genutil {

// The job list's procedures as error reports name them.
inline std::string jobListName(std::string_view procedureName) {
    return std::string("(Form) Joblist::Sub ").append(procedureName);
}

// An error that has passed out of a procedure, with what was said of it where it began: on its way it keeps
// its number's own words only.
class ReportedError : public Error {
public:
    ReportedError(const Error& error, std::string reason) : Error(error), reason_(std::move(reason)) {}
    const std::string& reason() const { return reason_; }

private:
    std::string reason_;
};

// What was said of the exception being handled where it began.
inline std::string reasonOfCurrentError() {
    try {
        throw;
    } catch (const ReportedError& error) {
        return error.reason();
    } catch (...) {
        return toError(std::current_exception()).description();
    }
}

template<class Body>
void jobListProcedure(Component& component, std::string_view procedureName, Body&& body) {
    std::string reason;
    try {
        procedure(
            component, [&] { return jobListName(procedureName); },
            [&] {
                try {
                    body();
                } catch (...) {
                    reason = reasonOfCurrentError();
                    throw;
                }
            });
    } catch (const Error& error) {
        throw ReportedError(error, std::move(reason));
    }
}

// Runs one step. A field or table that this job database does not have ends the step and nothing else: older
// jobs lack what later versions of the product added.
template<class Step>
void skippingMissingItems(Step&& step) {
    try {
        std::forward<Step>(step)();
    } catch (const Error& error) {
        if (error.number() != errors::ItemNotFound)
            throw;
    }
}

} // namespace genutil
