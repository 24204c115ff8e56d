// The kernel sets of the instruction set this translation unit is compiled for, built at compile
// time: one LookUpPixels instance per table source, way of fetching and type pair.
#pragma once

#include <cstddef>
#include <utility>

#include "element_types.h"
#include "kernel_set.h"
#include "pixel_loops.h"

OSTREL_ISA_BEGIN

template <class Source, Fetch kFetch, class In, std::size_t... OutCodes>
constexpr std::array<LookUpKernel<Source>, kDataTypeCount>
KernelRow(std::index_sequence<OutCodes...>) {
    return {&LookUpPixels<Source, kFetch, In, ElementType<OutCodes>>...};
}

template <class Source, Fetch kFetch, std::size_t... InCodes>
constexpr LookUpTable<Source> BuildTable(std::index_sequence<InCodes...> codes) {
    return {{KernelRow<Source, kFetch, ElementType<InCodes>>(codes)...}};
}

template <class Source, Fetch kFetch = Fetch::kLoads>
inline constexpr LookUpTable<Source>
    kLookUpTable = BuildTable<Source, kFetch>(std::make_index_sequence<kDataTypeCount>{});

// Tables that differ per pixel are read an element at a time in every set.
inline constexpr KernelSet kKernels = {&kLookUpTable<FixedLut>, &kLookUpTable<MappedLuts>,
                                       &kLookUpTable<KeyedLuts>};

OSTREL_ISA_END
