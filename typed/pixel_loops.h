// The pixel loop shared by the three kernel families. A family only decides which preset's tables
// a pixel is looked up in (its LUT source); the per-call choices, unit conversion and status, pick
// one of six instances of the loop before any pixel is touched. The loop takes its LUT source and
// conversion by value: a status byte store may alias any memory, but not a local copy.
#pragma once

#include <cstddef>
#include <cstring>

#include <emmintrin.h>

#include "element_rules.h"
#include "ostrel_types.h"
#include "packed_rules.h"
#include "temp_units.h"

namespace vz::typed {

// The temperature and status tables one pixel is looked up in.
struct LutPair {
    const float* values;
    const unsigned char* status;
};

// Temperatures left in the LUT unit.
struct KeepUnit {
    float operator()(float t) const { return t; }
    __m128 operator()(__m128 t) const { return t; }
};

// A unit conversion with its kind fixed before the loop; four values go through the same double
// operations, lane by lane, as one value does, so every result equals ConvertTemp's.
template <UnitConversion::Kind kKind> struct ConvertUnit {
    UnitConversion conversion;

    float operator()(float t) const {
        if constexpr (kKind == UnitConversion::kScale) {
            return conversion.Scale(t);
        } else {
            return conversion.Divide(t);
        }
    }
    __m128 operator()(__m128 t) const {
        const auto convert = [this](__m128d x) {
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
};

// Four pixels at a time, then the rest one by one. The four inputs are read before any result is
// stored, so a buffer whose input and output elements have the same width may be converted in
// place; the four results are stored together.
template <bool kWithStatus, class In, class Out, class LutSource, class Unit>
void LookUpLoop(const In* in, Out* out, ApiUInt32 n, unsigned char* status, const LutSource luts,
                const Unit unit) {
    const std::size_t count = n;
    std::size_t k = 0;
    for (; count - k >= 4; k += 4) {
        std::uint16_t i[4];
        CountIndices(in + k, i);
        const LutPair lut[4] = {luts.At(k), luts.At(k + 1), luts.At(k + 2), luts.At(k + 3)};
        StoreTemperatures(out + k, unit(_mm_setr_ps(lut[0].values[i[0]], lut[1].values[i[1]],
                                                    lut[2].values[i[2]], lut[3].values[i[3]])));
        if constexpr (kWithStatus) {
            const unsigned char marks[4] = {lut[0].status[i[0]], lut[1].status[i[1]],
                                            lut[2].status[i[2]], lut[3].status[i[3]]};
            std::memcpy(status + k, marks, sizeof marks);
        }
    }
    for (; k < count; ++k) {
        const LutPair lut = luts.At(k);
        const std::uint16_t i = CountIndex(in[k]);
        out[k] = StoreTemperature<Out>(unit(lut.values[i]));
        if constexpr (kWithStatus) {
            status[k] = lut.status[i];
        }
    }
}

template <class In, class Out, class LutSource, class Unit>
void LookUp(const In* in, Out* out, ApiUInt32 n, unsigned char* status, const LutSource& luts,
            const Unit& unit) {
    if (status != nullptr) {
        LookUpLoop<true>(in, out, n, status, luts, unit);
    } else {
        LookUpLoop<false>(in, out, n, status, luts, unit);
    }
}

// A requested unit equal to the LUT unit, or a code outside 0..3 (which ConvertTemp leaves
// untouched), takes the loop without conversion.
template <class In, class Out, class LutSource>
void LookUpPixels(const In* in, Out* out, ApiUInt32 n, unsigned char* status, const LutSource& luts,
                  ETempType lutUnit, ETempType type) {
    const UnitConversion conversion = UnitConversionFor(lutUnit, type);
    switch (conversion.kind) {
    case UnitConversion::kNone:
        LookUp(in, out, n, status, luts, KeepUnit{});
        break;
    case UnitConversion::kScale:
        LookUp(in, out, n, status, luts, ConvertUnit<UnitConversion::kScale>{conversion});
        break;
    case UnitConversion::kDivide:
        LookUp(in, out, n, status, luts, ConvertUnit<UnitConversion::kDivide>{conversion});
        break;
    }
}

} // namespace vz::typed
