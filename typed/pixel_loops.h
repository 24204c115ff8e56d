// The pixel loop shared by the kernels of every family and instruction set. The loop goes a
// group of lanes at a time (four with SSE2, eight with AVX2, sixteen with AVX-512: the lanes
// of the set this translation unit is compiled for), then one by one, fetching table entries the
// way kFetch says. The per-call choices, unit
// conversion and status, pick one of six instances of the loop before any pixel is touched. The
// loop takes its table source and conversion by value: a status byte store may alias any memory,
// but not a local copy.
#pragma once

#include <cstddef>

#include "element_rules.h"
#include "isa_namespace.h"
#include "lut_sources.h"
#include "ostrel_types.h"
#include "unit_formulas.h"

#if defined(__AVX512F__)
#include "lanes_avx512.h"
#elif defined(__AVX2__)
#include "lanes_avx2.h"
#else
#include "lanes_sse2.h"
#endif

OSTREL_ISA_BEGIN

// Temperatures left in the LUT unit.
struct KeepUnit {
    template <class T> T operator()(T t) const { return t; }
};

// A unit conversion with its kind fixed before the loop.
template <UnitConversion::Kind kKind> struct ConvertUnit {
    UnitConversion conversion;

    float operator()(float t) const { return Converted<kKind>(conversion, t); }
    Lanes::Floats operator()(Lanes::Floats t) const { return Lanes::Convert<kKind>(conversion, t); }
};

// A group's inputs are all read before any of its results is stored, so a buffer whose input and
// output elements have the same width may be converted in place.
template <bool kWithStatus, Fetch kFetch, class In, class Out, class Source, class Unit>
void LookUpLoop(const In* in, Out* out, ApiUInt32 n, unsigned char* status, const Source luts,
                const Unit unit) {
    const std::size_t count = n;
    std::size_t k = 0;
    for (; count - k >= Lanes::kCount; k += Lanes::kCount) {
        const auto indices = Lanes::CountIndices(in + k);
        Lanes::Store(out + k, unit(Lanes::template Values<kFetch>(luts, k, indices)));
        if constexpr (kWithStatus) {
            Lanes::template StoreStatus<kFetch>(status + k, luts, k, indices);
        }
    }
    for (; k < count; ++k) {
        const LutPair lut = LutAt(luts, k);
        const std::uint16_t i = CountIndex(in[k]);
        out[k] = StoreTemperature<Out>(unit(lut.values[i]));
        if constexpr (kWithStatus) {
            status[k] = lut.status[i];
        }
    }
}

template <Fetch kFetch, class In, class Out, class Source, class Unit>
void LookUp(const In* in, Out* out, ApiUInt32 n, unsigned char* status, const Source& luts,
            const Unit& unit) {
    if (status != nullptr) {
        LookUpLoop<true, kFetch>(in, out, n, status, luts, unit);
    } else {
        LookUpLoop<false, kFetch>(in, out, n, status, luts, unit);
    }
}

// The kernel of one family, way of fetching and type pair: the conversion picks the loop.
template <class Source, Fetch kFetch, class In, class Out>
void LookUpPixels(const Source& luts, const void* in, void* out, ApiUInt32 n, unsigned char* status,
                  const UnitConversion& conversion) {
    const auto* typedIn = static_cast<const In*>(in);
    auto* typedOut = static_cast<Out*>(out);
    switch (conversion.kind) {
    case UnitConversion::kNone:
        LookUp<kFetch>(typedIn, typedOut, n, status, luts, KeepUnit{});
        break;
    case UnitConversion::kScale:
        LookUp<kFetch>(typedIn, typedOut, n, status, luts,
                       ConvertUnit<UnitConversion::kScale>{conversion});
        break;
    case UnitConversion::kDivide:
        LookUp<kFetch>(typedIn, typedOut, n, status, luts,
                       ConvertUnit<UnitConversion::kDivide>{conversion});
        break;
    }
}

OSTREL_ISA_END
