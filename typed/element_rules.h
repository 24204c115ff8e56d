// The two element rules every kernel applies: input element to LUT index, temperature to output
// element, each for one element and for four at once (same results). Out-of-range values follow
// the x86-64 truncating conversions: the integer indefinite value for NaN and overflow. The packed
// forms use those conversions on table data; the one-element forms test the range instead,
// because GCC folds the truncating intrinsics of constant arguments as if they saturated, and a
// C++ cast out of range is undefined.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include <emmintrin.h>

namespace vz::typed {

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

// The four indices held in the low halves of four 32-bit lanes.
inline void ExtractIndices(__m128i lanes, std::uint16_t (&indices)[4]) {
    indices[0] = static_cast<std::uint16_t>(_mm_extract_epi16(lanes, 0));
    indices[1] = static_cast<std::uint16_t>(_mm_extract_epi16(lanes, 2));
    indices[2] = static_cast<std::uint16_t>(_mm_extract_epi16(lanes, 4));
    indices[3] = static_cast<std::uint16_t>(_mm_extract_epi16(lanes, 6));
}

// CountIndex of four consecutive inputs, all read before anything is written. The packed forms
// give the same indices: maxps and maxpd too return their second operand for NaN.
template <class In> void CountIndices(const In* x, std::uint16_t (&indices)[4]) {
    if constexpr (std::is_same_v<In, float>) {
        const __m128 clamped =
            _mm_min_ps(_mm_max_ps(_mm_loadu_ps(x), _mm_setzero_ps()), _mm_set1_ps(65535.0f));
        ExtractIndices(_mm_cvttps_epi32(clamped), indices);
    } else if constexpr (std::is_same_v<In, double>) {
        const auto clamp = [](__m128d v) {
            return _mm_cvttpd_epi32(
                _mm_min_pd(_mm_max_pd(v, _mm_setzero_pd()), _mm_set1_pd(65535.0)));
        };
        const __m128d low = _mm_loadu_pd(x);
        const __m128d high = _mm_loadu_pd(x + 2);
        ExtractIndices(_mm_unpacklo_epi64(clamp(low), clamp(high)), indices);
    } else if constexpr (sizeof(In) == 4) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(x));
        __m128i above; // lanes to become 65535
        __m128i kept = v;
        if constexpr (std::is_signed_v<In>) {
            kept = _mm_andnot_si128(_mm_srai_epi32(v, 31), v); // negative lanes become 0
            above = _mm_cmpgt_epi32(kept, _mm_set1_epi32(65535));
        } else {
            // Unsigned comparison through the signed one, with the sign bits flipped.
            const __m128i flip = _mm_set1_epi32(INT32_MIN);
            above = _mm_cmpgt_epi32(_mm_xor_si128(v, flip), _mm_set1_epi32(INT32_MIN + 65534));
        }
        ExtractIndices(_mm_or_si128(_mm_andnot_si128(above, kept),
                                    _mm_and_si128(above, _mm_set1_epi32(65535))),
                       indices);
    } else {
        In inputs[4];
        std::memcpy(inputs, x, sizeof inputs);
        for (int j = 0; j < 4; ++j) {
            indices[j] = CountIndex(inputs[j]);
        }
    }
}

// StoreTemperature of four temperatures into consecutive integer elements. The packed 32-bit
// truncation (the processor's, indefinite value included) is the rule itself for the signed
// narrow outputs and Int32. It also gives the other outputs their bits inside the 32-bit range,
// and UInt8 its bits everywhere (beyond 2^31 a float is a multiple of 256); for those, a group
// with a lane outside the range (NaN, or beyond +-2^31 degrees) follows the rule lane by lane.
template <class Out> void StoreTruncated(Out* out, __m128 t) {
    const __m128i whole = _mm_cvttps_epi32(t);
    constexpr bool kTruncates64 = !std::is_signed_v<Out> || sizeof(Out) == 8;
    if constexpr (kTruncates64 && sizeof(Out) > 1) {
        const __m128i indefinite = _mm_cmpeq_epi32(whole, _mm_set1_epi32(INT32_MIN));
        if (_mm_movemask_epi8(indefinite) != 0) {
            alignas(16) float lanes[4];
            _mm_store_ps(lanes, t);
            for (int j = 0; j < 4; ++j) {
                out[j] = StoreTemperature<Out>(lanes[j]);
            }
            return;
        }
    }
    if constexpr (sizeof(Out) == 8) {
        const __m128i sign = _mm_srai_epi32(whole, 31);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi32(whole, sign));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2), _mm_unpackhi_epi32(whole, sign));
    } else if constexpr (sizeof(Out) == 4) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), whole);
    } else {
        // Sign-extending the low bits makes the saturating packs exact.
        constexpr int kDropped = 32 - 8 * static_cast<int>(sizeof(Out));
        __m128i low = _mm_srai_epi32(_mm_slli_epi32(whole, kDropped), kDropped);
        low = _mm_packs_epi32(low, low);
        if constexpr (sizeof(Out) == 1) {
            low = _mm_packs_epi16(low, low);
        }
        const auto packed = static_cast<std::uint64_t>(_mm_cvtsi128_si64(low));
        std::memcpy(out, &packed, 4 * sizeof(Out));
    }
}

// StoreTemperature of four temperatures into consecutive elements, as one store.
template <class Out> void StoreTemperatures(Out* out, __m128 t) {
    if constexpr (std::is_same_v<Out, float>) {
        _mm_storeu_ps(out, t);
    } else if constexpr (std::is_same_v<Out, double>) {
        _mm_storeu_pd(out, _mm_cvtps_pd(t));
        _mm_storeu_pd(out + 2, _mm_cvtps_pd(_mm_movehl_ps(t, t)));
    } else {
        StoreTruncated(out, t);
    }
}

} // namespace vz::typed
