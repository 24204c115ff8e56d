// The pixel loop shared by the kernels of every family and instruction set. The loop goes a
// group of lanes at a time (four with SSE2, eight with AVX2, sixteen with AVX-512: the lanes of
// the set this translation unit is compiled for), then one by one, fetching table entries the way
// kFetch says. The per-call choices, unit conversion and where status bytes come from, pick one
// of nine instances of the loop (six where the pixels' tables differ) before any pixel is
// touched. The loop takes its table source, conversion and runs by value: a status byte store may
// alias any memory, but not a local copy.
#pragma once

#include <cstddef>
#include <type_traits>

#include "element_rules.h"
#include "isa_namespace.h"
#include "lut_sources.h"
#include "ostrel_types.h"
#include "status_runs.h"
#include "unit_formulas.h"

#if defined(__AVX512F__)
#include "lanes_avx512.h"
#elif defined(__AVX2__)
#include "lanes_avx2.h"
#else
#include "lanes_sse2.h"
#endif

OSTREL_ISA_BEGIN

// Under AddressSanitizer, inlining every call of every loop instance takes GCC many minutes per
// instruction set, for timings that mean nothing there.
#if defined(__SANITIZE_ADDRESS__)
#define OSTREL_FLATTEN
#else
#define OSTREL_FLATTEN [[gnu::flatten]]
#endif

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

// Where the status bytes of a call come from, fixed before the loop: none are stored, each is
// loaded from its pixel's table, or computed from one table's runs.
enum class StatusFrom { kNowhere, kTables, kRuns };

// A group's inputs are all read before any of its results is stored, so a buffer whose input and
// output elements have the same width may be converted in place. The one-by-one tail always loads
// its status bytes. Everything a group does is inlined: the compiler would otherwise call out
// for a group's loads once the loop has several instances, at half the speed.
template <StatusFrom kStatus, Fetch kFetch, class In, class Out, class Source, class Unit>
OSTREL_FLATTEN void LookUpLoop(const In* in, Out* out, ApiUInt32 n, unsigned char* status,
                               const Source luts, const Unit unit, const StatusRuns runs) {
    const std::size_t count = n;
    std::size_t k = 0;
    for (; count - k >= Lanes::kCount; k += Lanes::kCount) {
        const auto indices = Lanes::CountIndices(in + k);
        Lanes::Store(out + k, unit(Lanes::template Values<kFetch>(luts, k, indices)));
        if constexpr (kStatus == StatusFrom::kTables) {
            Lanes::template StoreStatus<kFetch>(status + k, luts, k, indices);
        } else if constexpr (kStatus == StatusFrom::kRuns) {
            Lanes::StoreStatus(status + k, runs, indices);
        }
    }
    for (; k < count; ++k) {
        const LutPair lut = LutAt(luts, k);
        const std::uint16_t i = CountIndex(in[k]);
        out[k] = StoreTemperature<Out>(unit(lut.values[i]));
        if constexpr (kStatus != StatusFrom::kNowhere) {
            status[k] = lut.status[i];
        }
    }
}

template <Fetch kFetch, class In, class Out, class Source, class Unit>
void LookUp(const In* in, Out* out, ApiUInt32 n, unsigned char* status, const Source& luts,
            const Unit& unit) {
    StatusRuns runs{};
    if (status == nullptr) {
        LookUpLoop<StatusFrom::kNowhere, kFetch>(in, out, n, status, luts, unit, runs);
        return;
    }
    if constexpr (std::is_same_v<Source, FixedLut>) {
        if (n >= kPixelsWorthRuns && FindStatusRuns(luts.lut.status, runs)) {
            LookUpLoop<StatusFrom::kRuns, kFetch>(in, out, n, status, luts, unit, runs);
            return;
        }
    }
    LookUpLoop<StatusFrom::kTables, kFetch>(in, out, n, status, luts, unit, runs);
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
