#pragma once

namespace genutil {

// Called, when set, with the name of each step of saving and of undoing a save before it is taken; the tests
// stop the process there.
using SaveStepObserver = void (*)(const char* step);
inline SaveStepObserver saveStepObserver = nullptr;

inline void beforeStep(const char* step) {
    if (saveStepObserver)
        saveStepObserver(step);
}

} // namespace genutil
