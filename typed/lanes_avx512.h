// Sixteen pixels at a time with AVX-512 (the foundation set, AVX512F, only): indices, unit
// conversion and stores in whole registers; the table entries and status bytes loaded one by one,
// or one preset's gathered, and status bytes computed from the runs of one preset's table. Loads
// and stores are unaligned, and no vector is kept in an array: see the note where the flags are
// set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <immintrin.h>

#include "element_rules.h"
#include "isa_namespace.h"
#include "lut_sources.h"
#include "status_runs.h"
#include "unit_formulas.h"

OSTREL_ISA_BEGIN

struct Lanes {
    static constexpr std::size_t kCount = 16;
    using Floats = __m512;

    // A group's indices as the loads take them. Sixteen of 16 bits, four to a 64-bit word: read a
    // word at a time and taken apart with shifts, they cost a quarter of the extractions from a
    // vector one by one. Unsigned 8-bit inputs are their own indices, which a load takes as an
    // address byte by byte at no further cost.
    struct Words {
        std::uint64_t words[4];
        std::uint32_t Index(std::size_t j) const {
            return static_cast<std::uint32_t>(words[j / 4] >> (16 * (j % 4))) & 0xFFFF;
        }
    };
    struct Bytes {
        std::uint8_t bytes[kCount];
        std::uint32_t Index(std::size_t j) const { return bytes[j]; }
    };
    // A group's indices in 32-bit lanes for the vector operations, and as the loads take them.
    template <class Packed> struct Indices {
        __m512i lanes;
        Packed packed;
    };

    // CountIndex of sixteen inputs, all read before anything is written. Unsigned 8- and 16-bit
    // inputs are their own indices; the signed ones are clamped in 16-bit lanes, the wider ones in
    // 32-bit lanes.
    template <class In> static auto CountIndices(const In* x) {
        if constexpr (std::is_same_v<In, std::uint8_t>) {
            Indices<Bytes> i;
            std::memcpy(i.packed.bytes, x, sizeof i.packed.bytes);
            i.lanes = _mm512_cvtepu8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(x)));
            return i;
        } else {
            Indices<Words> i;
            auto* words = reinterpret_cast<__m256i*>(i.packed.words);
            if constexpr (std::is_same_v<In, std::uint16_t>) {
                std::memcpy(i.packed.words, x, sizeof i.packed.words);
                i.lanes =
                    _mm512_cvtepu16_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(x)));
            } else if constexpr (sizeof(In) <= 2) {
                __m256i v;
                if constexpr (sizeof(In) == 2) {
                    v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(x));
                } else {
                    v = _mm256_cvtepi8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(x)));
                }
                const __m256i clamped = _mm256_max_epi16(v, _mm256_setzero_si256());
                _mm256_storeu_si256(words, clamped);
                i.lanes = _mm512_cvtepu16_epi32(clamped);
            } else {
                i.lanes = Clamped(x);
                _mm256_storeu_si256(words, _mm512_cvtepi32_epi16(i.lanes));
            }
            return i;
        }
    }

    template <Fetch kFetch, class Source, class GroupIndices>
    static __m512 Values(const Source& luts, std::size_t k, const GroupIndices& i) {
        if constexpr (kFetch == Fetch::kGather && std::is_same_v<Source, FixedLut>) {
            // Into a zeroed register, behind a mask the compiler cannot see: as with AVX2.
            __mmask16 all = 0xFFFF;
            __asm__("" : "+r"(all));
            return _mm512_mask_i32gather_ps(_mm512_setzero_ps(), all, i.lanes, luts.lut.values, 4);
        }
        const auto& at = i.packed;
        const auto value = [&](std::size_t j) { return LutAt(luts, k + j).values[at.Index(j)]; };
        // Lanes put together in registers: sixteen scalar stores read back as one vector would
        // wait for each store to reach the cache.
        const __m256 low = _mm256_setr_ps(value(0), value(1), value(2), value(3), value(4),
                                          value(5), value(6), value(7));
        const __m256 high = _mm256_setr_ps(value(8), value(9), value(10), value(11), value(12),
                                           value(13), value(14), value(15));
        return _mm512_castpd_ps(_mm512_insertf64x4(_mm512_castps_pd(_mm512_castps256_ps512(low)),
                                                   _mm256_castps_pd(high), 1));
    }

    // Gathered status bytes come as 32-bit words, of which the low byte is kept. A word at one of
    // the table's last three indices would reach past its end: those lanes are read alone.
    template <Fetch kFetch, class Source, class GroupIndices>
    static void StoreStatus(unsigned char* status, const Source& luts, std::size_t k,
                            const GroupIndices& i) {
        if constexpr (kFetch == Fetch::kGather && std::is_same_v<Source, FixedLut>) {
            StoreGatheredStatus(status, luts, i.lanes);
            return;
        }
        const auto& at = i.packed;
        for (std::size_t j = 0; j < kCount; ++j) {
            status[j] = LutAt(luts, k + j).status[at.Index(j)];
        }
    }
    static void StoreGatheredStatus(unsigned char* status, const FixedLut& luts, __m512i i) {
        const __mmask16 inside = _mm512_cmple_epu32_mask(i, _mm512_set1_epi32(kLutSize - 4));
        const __m512i words =
            _mm512_mask_i32gather_epi32(_mm512_setzero_si512(), inside, i, luts.lut.status, 1);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(status), _mm512_cvtepi32_epi8(words));
        if (inside != 0xFFFF) {
            std::uint32_t at[kCount];
            _mm512_storeu_si512(at, i);
            for (std::size_t j = 0; j < kCount; ++j) {
                status[j] = luts.lut.status[at[j]];
            }
        }
    }

    // Status from one table's runs.
    template <class GroupIndices>
    static void StoreStatus(unsigned char* status, const StatusRuns& runs, const GroupIndices& i) {
        __m512i marks = _mm512_set1_epi32(runs.marks[0]);
        for (std::size_t r = 1; r < StatusRuns::kCount; ++r) {
            const __mmask16 beyond =
                _mm512_cmpge_epi32_mask(i.lanes, _mm512_set1_epi32(runs.starts[r]));
            marks = _mm512_mask_mov_epi32(marks, beyond, _mm512_set1_epi32(runs.marks[r]));
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(status), _mm512_cvtepi32_epi8(marks));
    }

    // The sixteen values go through the same double operations, lane by lane, as one value does.
    template <UnitConversion::Kind kKind>
    static __m512 Convert(const UnitConversion& conversion, __m512 t) {
        const auto convert = [&conversion](__m256 half) {
            __m512d x = _mm512_add_pd(_mm512_cvtps_pd(half), _mm512_set1_pd(conversion.offset));
            if constexpr (kKind == UnitConversion::kScale) {
                x = _mm512_mul_pd(x, _mm512_set1_pd(conversion.factor));
            } else {
                x = _mm512_div_pd(x, _mm512_set1_pd(conversion.factor));
            }
            return _mm512_cvtpd_ps(_mm512_add_pd(x, _mm512_set1_pd(conversion.shift)));
        };
        const __m512d low = _mm512_castps_pd(_mm512_castps256_ps512(convert(Low(t))));
        return _mm512_castpd_ps(_mm512_insertf64x4(low, _mm256_castps_pd(convert(High(t))), 1));
    }

    // StoreTemperature of sixteen temperatures. The packed 32-bit truncation (the processor's,
    // indefinite value included) is the rule itself for the signed narrow outputs and Int32, and
    // gives UInt8 its bits everywhere (beyond 2^31 a float is a multiple of 256). It gives the
    // other integers their bits inside the 32-bit range; a group with a lane outside it (NaN, or
    // beyond +-2^31 degrees) follows the rule lane by lane.
    template <class Out> static void Store(Out* out, __m512 t) {
        if constexpr (std::is_same_v<Out, float>) {
            _mm512_storeu_ps(out, t);
        } else if constexpr (std::is_same_v<Out, double>) {
            _mm512_storeu_pd(out, _mm512_cvtps_pd(Low(t)));
            _mm512_storeu_pd(out + 8, _mm512_cvtps_pd(High(t)));
        } else {
            const __m512i whole = _mm512_cvttps_epi32(t);
            constexpr bool kTruncates64 = !std::is_signed_v<Out> || sizeof(Out) == 8;
            if constexpr (kTruncates64 && sizeof(Out) > 1) {
                if (_mm512_cmpeq_epi32_mask(whole, _mm512_set1_epi32(INT32_MIN)) != 0) {
                    float lanes[kCount];
                    _mm512_storeu_ps(lanes, t);
                    for (std::size_t j = 0; j < kCount; ++j) {
                        out[j] = StoreTemperature<Out>(lanes[j]);
                    }
                    return;
                }
            }
            if constexpr (sizeof(Out) == 8) {
                _mm512_storeu_si512(out, _mm512_cvtepi32_epi64(_mm512_castsi512_si256(whole)));
                _mm512_storeu_si512(out + 8,
                                    _mm512_cvtepi32_epi64(_mm512_extracti64x4_epi64(whole, 1)));
            } else if constexpr (sizeof(Out) == 4) {
                _mm512_storeu_si512(out, whole);
            } else if constexpr (sizeof(Out) == 2) {
                _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm512_cvtepi32_epi16(whole));
            } else {
                _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm512_cvtepi32_epi8(whole));
            }
        }
    }

private:
    // CountIndex of sixteen wider inputs in 32-bit lanes.
    template <class In> static __m512i Clamped(const In* x) {
        const __m512i zero = _mm512_setzero_si512();
        const __m512i top = _mm512_set1_epi32(65535);
        if constexpr (std::is_same_v<In, float>) {
            // maxps returns its second operand for NaN and zeros: NaN and -0 give 0.
            const __m512 clamped = _mm512_min_ps(
                _mm512_max_ps(_mm512_loadu_ps(x), _mm512_setzero_ps()), _mm512_set1_ps(65535.0f));
            return _mm512_cvttps_epi32(clamped);
        } else if constexpr (std::is_same_v<In, double>) {
            const auto clamp = [](__m512d v) {
                return _mm512_cvttpd_epi32(
                    _mm512_min_pd(_mm512_max_pd(v, _mm512_setzero_pd()), _mm512_set1_pd(65535.0)));
            };
            return Joined(clamp(_mm512_loadu_pd(x)), clamp(_mm512_loadu_pd(x + 8)));
        } else if constexpr (std::is_same_v<In, std::int64_t>) {
            const auto clamp = [](__m512i v) {
                return _mm512_cvtepi64_epi32(_mm512_min_epi64(
                    _mm512_max_epi64(v, _mm512_setzero_si512()), _mm512_set1_epi64(65535)));
            };
            return Joined(clamp(_mm512_loadu_si512(x)), clamp(_mm512_loadu_si512(x + 8)));
        } else if constexpr (std::is_same_v<In, std::uint64_t>) {
            const auto clamp = [](__m512i v) {
                return _mm512_cvtepi64_epi32(_mm512_min_epu64(v, _mm512_set1_epi64(65535)));
            };
            return Joined(clamp(_mm512_loadu_si512(x)), clamp(_mm512_loadu_si512(x + 8)));
        } else if constexpr (std::is_same_v<In, std::int32_t>) {
            return _mm512_min_epi32(_mm512_max_epi32(_mm512_loadu_si512(x), zero), top);
        } else {
            static_assert(std::is_same_v<In, std::uint32_t>);
            return _mm512_min_epu32(_mm512_loadu_si512(x), top);
        }
    }

    static __m256 Low(__m512 t) { return _mm512_castps512_ps256(t); }
    static __m256 High(__m512 t) {
        return _mm256_castpd_ps(_mm512_extractf64x4_pd(_mm512_castps_pd(t), 1));
    }
    static __m512i Joined(__m256i low, __m256i high) {
        return _mm512_inserti64x4(_mm512_castsi256_si512(low), high, 1);
    }
};

OSTREL_ISA_END
