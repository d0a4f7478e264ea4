#pragma once

#include "hostif/error.h"

#include <k_genutil/automation.h>

#include <exception>

namespace genutil {

// Where errors leave the component for its host: 0x800A0000 + number as the result, with description and
// source as this thread's error information until the next call or until taken. Nothing escapes as an
// exception.

// The result code of an error number: numbers from 1 to 65535 get the control facility, negative ones are
// result codes already; anything else is InternalError's.
HRESULT resultOf(int number);

// The error number in a result code or in what an automation object answered: the inverse of resultOf, the
// nearest number for the interface's own codes, AutomationError for the rest.
int numberOf(HRESULT result);

// Forgets this thread's error information.
void clearErrorInfo() noexcept;

// Makes the exception this thread's error information and gives its result code.
HRESULT reportException(const std::exception_ptr& exception) noexcept;

// Moves this thread's error information into the EXCEPINFO (null: drops it) and answers DISP_E_EXCEPTION.
// Without error information the result code alone is filled in.
HRESULT fillException(HRESULT result, EXCEPINFO* exception) noexcept;

// What the exported GetErrorInfo does.
HRESULT takeErrorInfo(ULONG reserved, IErrorInfo** information) noexcept;

// Runs one member's body. When it succeeds, no error information is left of calls that came in meanwhile.
template<class Body>
HRESULT guarded(Body&& body) noexcept {
    clearErrorInfo();
    try {
        body();
        clearErrorInfo();
        return S_OK;
    } catch (...) {
        return reportException(std::current_exception());
    }
}

} // namespace genutil
