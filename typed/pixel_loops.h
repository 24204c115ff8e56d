// The pixel loops shared by the three kernel families. A family only decides which preset's
// tables a pixel is looked up in (its LUT source); the per-call choices, unit conversion and
// status, pick one loop before any pixel is touched. The loops take their LUT source and
// conversion by value: a status byte store may alias any memory, but not a local copy.
#pragma once

#include <cstddef>
#include <cstring>

#include "element_rules.h"
#include "ostrel_types.h"
#include "temp_units.h"

namespace vz::typed {

// The temperature and status tables one pixel is looked up in.
struct LutPair {
    const float* values;
    const unsigned char* status;
};

// Four pixels at a time, then the rest one by one. The four inputs are read before any result is
// stored, so a buffer whose input and output elements have the same width may be converted in
// place; the four results are stored together.
template <bool kWithStatus, class In, class Out, class LutSource>
void LookUpSameUnit(const In* in, Out* out, ApiUInt32 n, unsigned char* status,
                    const LutSource luts) {
    const std::size_t count = n;
    std::size_t k = 0;
    for (; count - k >= 4; k += 4) {
        std::uint16_t i[4];
        CountIndices(in + k, i);
        const LutPair lut[4] = {luts.At(k), luts.At(k + 1), luts.At(k + 2), luts.At(k + 3)};
        StoreTemperatures(out + k, _mm_setr_ps(lut[0].values[i[0]], lut[1].values[i[1]],
                                               lut[2].values[i[2]], lut[3].values[i[3]]));
        if constexpr (kWithStatus) {
            const unsigned char marks[4] = {lut[0].status[i[0]], lut[1].status[i[1]],
                                            lut[2].status[i[2]], lut[3].status[i[3]]};
            std::memcpy(status + k, marks, sizeof marks);
        }
    }
    for (; k < count; ++k) {
        const LutPair lut = luts.At(k);
        const std::uint16_t i = CountIndex(in[k]);
        out[k] = StoreTemperature<Out>(lut.values[i]);
        if constexpr (kWithStatus) {
            status[k] = lut.status[i];
        }
    }
}

// conversion.Scale or conversion.Divide, chosen before the loop, converts each value exactly as
// ConvertTemp would.
template <bool kWithStatus, UnitConversion::Kind kKind, class In, class Out, class LutSource>
void LookUpConverting(const In* in, Out* out, ApiUInt32 n, unsigned char* status,
                      const LutSource luts, const UnitConversion conversion) {
    const std::size_t count = n;
    for (std::size_t k = 0; k < count; ++k) {
        const LutPair lut = luts.At(k);
        const std::uint16_t i = CountIndex(in[k]);
        float t = lut.values[i];
        if constexpr (kKind == UnitConversion::kScale) {
            t = conversion.Scale(t);
        } else {
            t = conversion.Divide(t);
        }
        out[k] = StoreTemperature<Out>(t);
        if constexpr (kWithStatus) {
            status[k] = lut.status[i];
        }
    }
}

// A requested unit equal to the LUT unit, or a code outside 0..3 (which ConvertTemp leaves
// untouched), takes the loop without conversion.
template <class In, class Out, class LutSource>
void LookUpPixels(const In* in, Out* out, ApiUInt32 n, unsigned char* status, const LutSource& luts,
                  ETempType lutUnit, ETempType type) {
    const UnitConversion conversion = UnitConversionFor(lutUnit, type);
    const bool withStatus = status != nullptr;
    switch (conversion.kind) {
    case UnitConversion::kNone:
        if (withStatus) {
            LookUpSameUnit<true>(in, out, n, status, luts);
        } else {
            LookUpSameUnit<false>(in, out, n, status, luts);
        }
        break;
    case UnitConversion::kScale:
        if (withStatus) {
            LookUpConverting<true, UnitConversion::kScale>(in, out, n, status, luts, conversion);
        } else {
            LookUpConverting<false, UnitConversion::kScale>(in, out, n, status, luts, conversion);
        }
        break;
    case UnitConversion::kDivide:
        if (withStatus) {
            LookUpConverting<true, UnitConversion::kDivide>(in, out, n, status, luts, conversion);
        } else {
            LookUpConverting<false, UnitConversion::kDivide>(in, out, n, status, luts, conversion);
        }
        break;
    }
}

} // namespace vz::typed
