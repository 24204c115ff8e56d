// The kernel set of the instruction set this translation unit is compiled for, built at compile
// time: one LookUpPixels instance per table source and type pair.
#pragma once

#include <cstddef>
#include <utility>

#include "element_types.h"
#include "kernel_set.h"
#include "pixel_loops.h"

OSTREL_ISA_BEGIN

template <class Source, class In, std::size_t... OutCodes>
constexpr std::array<LookUpKernel<Source>, kDataTypeCount>
KernelRow(std::index_sequence<OutCodes...>) {
    return {&LookUpPixels<Source, In, ElementType<OutCodes>>...};
}

template <class Source, std::size_t... InCodes>
constexpr LookUpTable<Source> BuildTable(std::index_sequence<InCodes...> codes) {
    return {{KernelRow<Source, ElementType<InCodes>>(codes)...}};
}

template <class Source>
inline constexpr LookUpTable<Source>
    kLookUpTable = BuildTable<Source>(std::make_index_sequence<kDataTypeCount>{});

inline constexpr KernelSet kKernels = {&kLookUpTable<FixedLut>, &kLookUpTable<MappedLuts>,
                                       &kLookUpTable<KeyedLuts>};

OSTREL_ISA_END
