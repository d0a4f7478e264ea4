#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the run, so that the fuzzer keeps the input.
#define REQUIRE(condition)                                                                                   \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "line %d: %s\n", __LINE__, #condition);                                     \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)
