// The element rules for four consecutive elements at once, with SSE2: the same results as
// CountIndex and StoreTemperature element by element. They apply the processor's truncating
// conversions to table data and inputs, never to constants the compiler could fold.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#include <emmintrin.h>

#include "isa_namespace.h"

#include "element_rules.h"

OSTREL_ISA_BEGIN

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
    } else if constexpr (std::is_signed_v<In> && sizeof(In) <= 2) {
        // Four 16-bit lanes (8-bit inputs sign-extended); pmaxsw turns the negative ones into 0.
        __m128i v;
        if constexpr (sizeof(In) == 2) {
            v = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(x));
        } else {
            std::int32_t four;
            std::memcpy(&four, x, sizeof four);
            v = _mm_cvtsi32_si128(four);
            v = _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8);
        }
        v = _mm_max_epi16(v, _mm_setzero_si128());
        const auto lanes = static_cast<std::uint64_t>(_mm_cvtsi128_si64(v));
        for (int j = 0; j < 4; ++j) {
            indices[j] = static_cast<std::uint16_t>(lanes >> (16 * j));
        }
    } else if constexpr (sizeof(In) <= 2) {
        // One load for the four narrow inputs.
        In inputs[4];
        std::memcpy(inputs, x, sizeof inputs);
        for (int j = 0; j < 4; ++j) {
            indices[j] = CountIndex(inputs[j]);
        }
    } else {
        for (int j = 0; j < 4; ++j) {
            indices[j] = CountIndex(x[j]);
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

OSTREL_ISA_END
