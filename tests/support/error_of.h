#pragma once

#include "hostif/error.h"

namespace genutil::fake {

// The number of the error that the act throws; 0 when it throws none.
template<class Act>
int errorOf(const Act& act) {
    try {
        act();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

} // namespace genutil::fake
