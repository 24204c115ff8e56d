// Eight pixels at a time with AVX2: indices, unit conversion and stores in whole registers; the
// table entries loaded one by one, or one preset's gathered. Status bytes are computed from the
// runs of one preset's table, or else loaded one by one: a gather of 32-bit words would read past
// the end of the table. Loads and stores are unaligned, and no vector is kept in an array: see
// the note where the flags are set.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <immintrin.h>

#include "element_rules.h"
#include "isa_namespace.h"
#include "lut_sources.h"
#include "packed_rules.h"
#include "status_runs.h"
#include "unit_formulas.h"

OSTREL_ISA_BEGIN

struct Lanes {
    static constexpr std::size_t kCount = 8;
    // A group's indices, as numbers for the loads and as 16-bit lanes for the vector operations.
    struct Indices {
        std::uint32_t at[kCount];
        __m128i lanes;
    };
    using Floats = __m256;

    // CountIndex of eight inputs, all read before anything is written. Unsigned 8- and 16-bit
    // inputs are their own indices and 64-bit integers have no packed comparisons in AVX2: those
    // go one by one; the other narrow ones are clamped in 16-bit lanes, the wide ones in 32-bit
    // lanes.
    template <class In> static Indices CountIndices(const In* x) {
        Indices indices;
        if constexpr (std::is_integral_v<In> && sizeof(In) == 8) {
            for (std::size_t j = 0; j < kCount; ++j) {
                indices.at[j] = CountIndex(x[j]);
            }
            indices.lanes =
                Narrowed(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(indices.at)));
        } else if constexpr (std::is_same_v<In, std::uint16_t>) {
            // The inputs are the indices, read as two words. The lanes are made from the words:
            // loaded apart, the compiler would pass the inputs through the stack.
            std::uint64_t words[2];
            std::memcpy(words, x, sizeof words);
            Unpack(words, indices.at);
            indices.lanes = _mm_insert_epi64(_mm_cvtsi64_si128(static_cast<long long>(words[0])),
                                             static_cast<long long>(words[1]), 1);
        } else if constexpr (std::is_same_v<In, std::uint8_t>) {
            std::uint8_t inputs[kCount];
            std::memcpy(inputs, x, sizeof inputs);
            for (std::size_t j = 0; j < kCount; ++j) {
                indices.at[j] = inputs[j];
            }
            indices.lanes = _mm_cvtepu8_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(x)));
        } else if constexpr (sizeof(In) <= 2) {
            __m128i v;
            if constexpr (sizeof(In) == 2) {
                v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(x));
            } else {
                v = _mm_cvtepi8_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(x)));
            }
            indices.lanes = _mm_max_epi16(v, _mm_setzero_si128());
            const std::uint64_t words[2] = {
                static_cast<std::uint64_t>(_mm_cvtsi128_si64(indices.lanes)),
                static_cast<std::uint64_t>(_mm_extract_epi64(indices.lanes, 1))};
            Unpack(words, indices.at);
        } else {
            const __m256i clamped = Clamped(x);
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(indices.at), clamped);
            indices.lanes = Narrowed(clamped);
        }
        return indices;
    }

    template <Fetch kFetch, class Source>
    static __m256 Values(const Source& luts, std::size_t k, const Indices& i) {
        if constexpr (kFetch == Fetch::kGather && std::is_same_v<Source, FixedLut>) {
            // Gathered into a zeroed register: the gather keeps the lanes it skips, so into one
            // left as it was it would wait for the previous group's results. The compiler drops
            // the zeroing when it can see that the mask is all ones.
            __m256 all = _mm256_castsi256_ps(_mm256_set1_epi32(-1));
            __asm__("" : "+x"(all));
            return _mm256_mask_i32gather_ps(_mm256_setzero_ps(), luts.lut.values,
                                            _mm256_cvtepu16_epi32(i.lanes), all, 4);
        }
        const auto value = [&](std::size_t j) { return LutAt(luts, k + j).values[i.at[j]]; };
        return _mm256_setr_ps(value(0), value(1), value(2), value(3), value(4), value(5), value(6),
                              value(7));
    }

    template <Fetch, class Source>
    static void StoreStatus(unsigned char* status, const Source& luts, std::size_t k,
                            const Indices& i) {
        unsigned char marks[kCount];
        for (std::size_t j = 0; j < kCount; ++j) {
            marks[j] = LutAt(luts, k + j).status[i.at[j]];
        }
        std::memcpy(status, marks, sizeof marks);
    }

    // Status from one table's runs: each lane counts the runs it is beyond, and the count picks
    // the mark. The comparisons are signed: indices and starts are biased by half their range.
    static void StoreStatus(unsigned char* status, const StatusRuns& runs, const Indices& i) {
        const __m128i bias = _mm_set1_epi16(INT16_MIN);
        const __m128i at = _mm_xor_si128(i.lanes, bias);
        __m128i run = _mm_setzero_si128();
        for (std::size_t r = 1; r < StatusRuns::kCount; ++r) {
            const __m128i last = _mm_set1_epi16(static_cast<short>(runs.starts[r] - 1));
            run = _mm_sub_epi16(run, _mm_cmpgt_epi16(at, _mm_xor_si128(last, bias)));
        }
        const __m128i marks = _mm_shuffle_epi8(Marks(runs), _mm_packus_epi16(run, run));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(status), marks);
    }

    // The eight values go through the same double operations, lane by lane, as one value does.
    template <UnitConversion::Kind kKind>
    static __m256 Convert(const UnitConversion& conversion, __m256 t) {
        const auto convert = [&conversion](__m128 half) {
            __m256d x = _mm256_add_pd(_mm256_cvtps_pd(half), _mm256_set1_pd(conversion.offset));
            if constexpr (kKind == UnitConversion::kScale) {
                x = _mm256_mul_pd(x, _mm256_set1_pd(conversion.factor));
            } else {
                x = _mm256_div_pd(x, _mm256_set1_pd(conversion.factor));
            }
            return _mm256_cvtpd_ps(_mm256_add_pd(x, _mm256_set1_pd(conversion.shift)));
        };
        return _mm256_set_m128(convert(_mm256_extractf128_ps(t, 1)),
                               convert(_mm256_castps256_ps128(t)));
    }

    template <class Out> static void Store(Out* out, __m256 t) {
        if constexpr (std::is_same_v<Out, float>) {
            _mm256_storeu_ps(out, t);
        } else if constexpr (std::is_same_v<Out, double>) {
            _mm256_storeu_pd(out, _mm256_cvtps_pd(_mm256_castps256_ps128(t)));
            _mm256_storeu_pd(out + 4, _mm256_cvtps_pd(_mm256_extractf128_ps(t, 1)));
        } else if constexpr (std::is_same_v<Out, std::int32_t>) {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_cvttps_epi32(t));
        } else {
            // The other integers by the four-lane rules, which handle their overflow.
            StoreTemperatures(out, _mm256_castps256_ps128(t));
            StoreTemperatures(out + 4, _mm256_extractf128_ps(t, 1));
        }
    }

private:
    // Eight 16-bit indices, four to a 64-bit word, taken apart with shifts.
    static void Unpack(const std::uint64_t (&words)[2], std::uint32_t (&at)[kCount]) {
        for (std::size_t j = 0; j < kCount; ++j) {
            at[j] = static_cast<std::uint32_t>(words[j / 4] >> (16 * (j % 4))) & 0xFFFF;
        }
    }

    // The runs' marks in the first bytes.
    static __m128i Marks(const StatusRuns& runs) {
        const auto m = [&runs](std::size_t r) { return static_cast<char>(runs.marks[r]); };
        return _mm_setr_epi8(m(0), m(1), m(2), m(3), m(4), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    }

    // Eight indices of 32 bits as 16-bit lanes.
    static __m128i Narrowed(__m256i indices) {
        return _mm_packus_epi32(_mm256_castsi256_si128(indices),
                                _mm256_extracti128_si256(indices, 1));
    }

    // CountIndex of eight wider inputs in 32-bit lanes.
    template <class In> static __m256i Clamped(const In* x) {
        const __m256i zero = _mm256_setzero_si256();
        const __m256i top = _mm256_set1_epi32(65535);
        if constexpr (std::is_same_v<In, float>) {
            // maxps returns its second operand for NaN and zeros: NaN and -0 give 0.
            const __m256 clamped = _mm256_min_ps(
                _mm256_max_ps(_mm256_loadu_ps(x), _mm256_setzero_ps()), _mm256_set1_ps(65535.0f));
            return _mm256_cvttps_epi32(clamped);
        } else if constexpr (std::is_same_v<In, double>) {
            const auto clamp = [](__m256d v) {
                return _mm256_cvttpd_epi32(
                    _mm256_min_pd(_mm256_max_pd(v, _mm256_setzero_pd()), _mm256_set1_pd(65535.0)));
            };
            return _mm256_set_m128i(clamp(_mm256_loadu_pd(x + 4)), clamp(_mm256_loadu_pd(x)));
        } else if constexpr (std::is_same_v<In, std::int32_t>) {
            const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(x));
            return _mm256_min_epi32(_mm256_max_epi32(v, zero), top);
        } else {
            static_assert(std::is_same_v<In, std::uint32_t>);
            return _mm256_min_epu32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(x)), top);
        }
    }
};

OSTREL_ISA_END
