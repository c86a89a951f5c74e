// A library preloaded only into programs that run under memcheck here.
//
// OpenImageIO loads the JPEG XL codec, which loads the Highway SIMD library
// (libhwy.so.1). A static initialiser of libhwy measures the resolution of
// its cycle counter with the RDTSCP instruction, without asking the CPU
// whether it has one. Valgrind 3.19 translates RDTSCP only when the CPU
// reports it, and some virtual machines hide it, so every program linked
// with OpenImageIO dies of SIGILL under Valgrind there, before main().
//
// Through Valgrind's function-wrapping mechanism, this file answers
// hwy::platform::TimerResolution() with a constant, so that the instruction
// never runs. The value only feeds libhwy's micro-benchmark helpers, which
// nothing in these programs calls. Outside Valgrind the wrapper is inert:
// the symbol below is only looked up by Valgrind.

#include <valgrind/valgrind.h>

#include <cstdint>

// The wrapper's name encodes the soname "libhwy.so.1" (Z-encoded: "Zd" is
// '.') and the mangled name of `std::uint64_t hwy::platform::TimerResolution()`.
extern "C" std::uint64_t I_WRAP_SONAME_FNNAME_ZU(libhwyZdsoZd1, _ZN3hwy8platform15TimerResolutionEv)();

extern "C" std::uint64_t I_WRAP_SONAME_FNNAME_ZU(libhwyZdsoZd1, _ZN3hwy8platform15TimerResolutionEv)()
{
    // A typical cycle-counter resolution, in ticks.
    return 20;
}
