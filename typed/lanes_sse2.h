// Four pixels at a time with SSE2, the baseline every x86-64 processor has: table entries are
// loaded one by one, status bytes too unless they are computed from the runs of one table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <emmintrin.h>

#include "isa_namespace.h"
#include "lut_sources.h"
#include "packed_rules.h"
#include "status_runs.h"
#include "unit_formulas.h"

OSTREL_ISA_BEGIN

struct Lanes {
    static constexpr std::size_t kCount = 4;
    struct Indices {
        std::uint16_t at[4];
    };
    using Floats = __m128;

    template <class In> static Indices CountIndices(const In* x) {
        Indices indices;
        typed::CountIndices(x, indices.at);
        return indices;
    }

    // SSE2 has no gather: both ways of fetching are loads.
    template <Fetch, class Source>
    static __m128 Values(const Source& luts, std::size_t k, const Indices& i) {
        return _mm_setr_ps(LutAt(luts, k).values[i.at[0]], LutAt(luts, k + 1).values[i.at[1]],
                           LutAt(luts, k + 2).values[i.at[2]], LutAt(luts, k + 3).values[i.at[3]]);
    }

    template <Fetch, class Source>
    static void StoreStatus(unsigned char* status, const Source& luts, std::size_t k,
                            const Indices& i) {
        const unsigned char marks[4] = {
            LutAt(luts, k).status[i.at[0]], LutAt(luts, k + 1).status[i.at[1]],
            LutAt(luts, k + 2).status[i.at[2]], LutAt(luts, k + 3).status[i.at[3]]};
        std::memcpy(status, marks, sizeof marks);
    }

    // Status from one table's runs, compared in 32-bit lanes: the last start is beyond 16 bits.
    static void StoreStatus(unsigned char* status, const StatusRuns& runs, const Indices& i) {
        std::uint64_t indices;
        std::memcpy(&indices, i.at, sizeof indices);
        const __m128i at = _mm_unpacklo_epi16(_mm_cvtsi64_si128(static_cast<long long>(indices)),
                                              _mm_setzero_si128());
        __m128i marks = _mm_set1_epi32(runs.marks[0]);
        for (std::size_t r = 1; r < StatusRuns::kCount; ++r) {
            const __m128i beyond = _mm_cmpgt_epi32(at, _mm_set1_epi32(runs.starts[r] - 1));
            const __m128i flip = _mm_set1_epi32(runs.marks[r] ^ runs.marks[r - 1]);
            marks = _mm_xor_si128(marks, _mm_and_si128(beyond, flip));
        }
        const __m128i halves = _mm_packs_epi32(marks, marks);
        const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(halves, halves));
        std::memcpy(status, &bytes, sizeof bytes);
    }

    // The four values go through the same double operations, lane by lane, as one value does.
    template <UnitConversion::Kind kKind>
    static __m128 Convert(const UnitConversion& conversion, __m128 t) {
        const auto convert = [&conversion](__m128d x) {
            x = _mm_add_pd(x, _mm_set1_pd(conversion.offset));
            if constexpr (kKind == UnitConversion::kScale) {
                x = _mm_mul_pd(x, _mm_set1_pd(conversion.factor));
            } else {
                x = _mm_div_pd(x, _mm_set1_pd(conversion.factor));
            }
            return _mm_cvtpd_ps(_mm_add_pd(x, _mm_set1_pd(conversion.shift)));
        };
        return _mm_movelh_ps(convert(_mm_cvtps_pd(t)), convert(_mm_cvtps_pd(_mm_movehl_ps(t, t))));
    }

    template <class Out> static void Store(Out* out, __m128 t) { StoreTemperatures(out, t); }
};

OSTREL_ISA_END
