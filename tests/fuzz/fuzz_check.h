#pragma once
// Property checks shared by the fuzz targets.
//
// A violated property prints where and what, then traps: libFuzzer records
// the input as a crash and the run fails, in every build type (these checks
// do not depend on NDEBUG).

#include <cstdint>
#include <cstdio>
#include <string>

#define FUZZ_CHECK(condition, what)                                                                                    \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "%s:%d: property violated: %s\n  (%s)\n", __FILE__, __LINE__, what, #condition);      \
            std::fflush(stderr);                                                                                       \
            __builtin_trap();                                                                                          \
        }                                                                                                              \
    } while (false)
