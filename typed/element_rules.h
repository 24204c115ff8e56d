// The two element rules every kernel applies: input element to LUT index, temperature to output
// element. Out-of-range values follow the x86-64 truncating conversions: the integer indefinite
// value for NaN and overflow. The range is tested rather than left to the truncating intrinsics,
// because GCC folds those for constant arguments as if they saturated, and a C++ cast out of
// range is undefined.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

#include <emmintrin.h>

#include "isa_namespace.h"

OSTREL_ISA_BEGIN

// Clamps an input element into a LUT index 0..65535; never rejects.
template <class In> std::uint16_t CountIndex(In x) {
    if constexpr (std::is_same_v<In, float>) {
        // max(x, 0) then min(., 65535) equals the ordered tests "0 >= x", "x >= 65535": maxss
        // returns its second operand for NaN and for zeros, so NaN and -0 give 0 without a branch.
        const __m128 clamped =
            _mm_min_ss(_mm_max_ss(_mm_set_ss(x), _mm_setzero_ps()), _mm_set_ss(65535.0f));
        return static_cast<std::uint16_t>(_mm_cvttss_si64(clamped));
    } else if constexpr (std::is_same_v<In, double>) {
        const __m128d clamped =
            _mm_min_sd(_mm_max_sd(_mm_set_sd(x), _mm_setzero_pd()), _mm_set_sd(65535.0));
        return static_cast<std::uint16_t>(_mm_cvttsd_si64(clamped));
    } else if constexpr (std::is_signed_v<In>) {
        if constexpr (sizeof(In) <= 2) {
            return x <= 0 ? std::uint16_t{0} : static_cast<std::uint16_t>(x);
        } else {
            return x <= 0       ? std::uint16_t{0}
                   : x >= 65535 ? std::uint16_t{65535}
                                : static_cast<std::uint16_t>(x);
        }
    } else if constexpr (sizeof(In) <= 2) {
        return x;
    } else {
        return x < 65535 ? static_cast<std::uint16_t>(x) : std::uint16_t{65535};
    }
}

// Truncation toward zero as the processor does it: NaN and values beyond the range give the
// integer indefinite value (only the sign bit set); the cast runs only inside the range.
inline std::int32_t Truncate32(float t) {
    return t >= -2147483648.0f && t < 2147483648.0f ? static_cast<std::int32_t>(t)
                                                    : std::numeric_limits<std::int32_t>::min();
}
inline std::int64_t Truncate64(float t) {
    return t >= -9223372036854775808.0f && t < 9223372036854775808.0f
               ? static_cast<std::int64_t>(t)
               : std::numeric_limits<std::int64_t>::min();
}

// Stores a temperature into an output element: integers truncate toward zero and keep the low
// bits, without rounding or saturation. Signed narrow outputs go through a 32-bit truncation,
// unsigned ones and Int64 through a 64-bit one; outside the 32-bit range the two differ.
template <class Out> Out StoreTemperature(float t) {
    if constexpr (std::is_floating_point_v<Out>) {
        return t;
    } else if constexpr (std::is_same_v<Out, std::uint64_t>) {
        constexpr float kTwoTo63 = 9223372036854775808.0f;
        if (t >= kTwoTo63) {
            const float reduced = t - kTwoTo63;
            const auto truncated = static_cast<std::uint64_t>(Truncate64(reduced));
            return reduced < kTwoTo63 ? truncated + 0x8000000000000000u : truncated;
        }
        return static_cast<std::uint64_t>(Truncate64(t));
    } else if constexpr (std::is_signed_v<Out> && sizeof(Out) <= 4) {
        return static_cast<Out>(Truncate32(t));
    } else {
        return static_cast<Out>(Truncate64(t));
    }
}

OSTREL_ISA_END
