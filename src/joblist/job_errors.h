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

template<class Body>
void jobListProcedure(Component& component, std::string_view procedureName, Body&& body) {
    procedure(
        component, [&] { return jobListName(procedureName); }, std::forward<Body>(body));
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
