#include "half_floats.h"

#include <OpenImageIO/half.h>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#include <immintrin.h>
#define VERRA_HAVE_F16C_ROUTE 1
#endif

namespace orv::verra_sdk::kit::detail {

namespace {

void halfToFloatScalar(std::uint16_t const* halves, float* floats, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        floats[i] = imath_half_to_float(halves[i]);
    }
}

void floatToHalfScalar(float const* floats, std::uint16_t* halves, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        halves[i] = imath_float_to_half(floats[i]);
    }
}

#ifdef VERRA_HAVE_F16C_ROUTE

/// True when the processor has F16C and AVX and the system saves the AVX
/// registers.
bool hasF16c()
{
    static bool const has = [] {
        unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
        if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0) {
            return false;
        }
        bool const features = (ecx & bit_F16C) != 0 && (ecx & bit_AVX) != 0 && (ecx & bit_OSXSAVE) != 0;
        unsigned low = 0, high = 0;
        if (features) {
            __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
        }
        return features && (low & 6U) == 6U;
    }();
    return has;
}

// The instructions quiet a signalling NaN and Imath does not: a group of 8
// holding any NaN goes through Imath instead.

__attribute__((target("f16c,avx"))) void halfToFloatF16c(std::uint16_t const* halves, float* floats, std::size_t count)
{
    std::size_t i = 0;
    __m128i const exponent = _mm_set1_epi16(0x7c00);
    for (; i + 8 <= count; i += 8) {
        __m128i const bits = _mm_loadu_si128(reinterpret_cast<__m128i const*>(halves + i));
        // Exponent all ones and any mantissa bit: NaN (infinities pass).
        __m128i const abs = _mm_and_si128(bits, _mm_set1_epi16(0x7fff));
        if (_mm_movemask_epi8(_mm_cmpgt_epi16(abs, exponent)) != 0) {
            halfToFloatScalar(halves + i, floats + i, 8);
        } else {
            _mm256_storeu_ps(floats + i, _mm256_cvtph_ps(bits));
        }
    }
    halfToFloatScalar(halves + i, floats + i, count - i);
}

__attribute__((target("f16c,avx"))) void floatToHalfF16c(float const* floats, std::uint16_t* halves, std::size_t count)
{
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        __m256 const values = _mm256_loadu_ps(floats + i);
        if (_mm256_movemask_ps(_mm256_cmp_ps(values, values, _CMP_UNORD_Q)) != 0) {
            floatToHalfScalar(floats + i, halves + i, 8);
        } else {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(halves + i),
                             _mm256_cvtps_ph(values, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC));
        }
    }
    floatToHalfScalar(floats + i, halves + i, count - i);
}

#endif

} // namespace

void halfToFloat(std::uint16_t const* halves, float* floats, std::size_t count)
{
#ifdef VERRA_HAVE_F16C_ROUTE
    if (hasF16c()) {
        halfToFloatF16c(halves, floats, count);
        return;
    }
#endif
    halfToFloatScalar(halves, floats, count);
}

void floatToHalf(float const* floats, std::uint16_t* halves, std::size_t count)
{
#ifdef VERRA_HAVE_F16C_ROUTE
    if (hasF16c()) {
        floatToHalfF16c(floats, halves, count);
        return;
    }
#endif
    floatToHalfScalar(floats, halves, count);
}

} // namespace orv::verra_sdk::kit::detail
