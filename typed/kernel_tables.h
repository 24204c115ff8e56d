// The kernel of every family and its 10 x 10 table, built at compile time: cell [a][b] of a
// family's table is its kernel for input element type a and output element type b. A family
// (uniform_family.h, per_pixel_family.h, keyed_family.h) says which presets it refreshes and in
// which preset's LUT each pixel is looked up; buffer pointers are typed only inside a cell.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "element_types.h"
#include "pixel_loops.h"

namespace vz::typed {

// Refreshes the family's LUTs first; when that fails nothing is written, even for n = 0.
template <class In, class Out, class Family>
bool CountsToTemp(const Family& family, const In* in, Out* out, ApiUInt32 n, unsigned char* status,
                  ETempType type) {
    if (!family.Refresh()) {
        return false;
    }
    LookUpPixels(in, out, n, status, family.Luts(), family.engine.LutTempType(), type);
    return true;
}

template <class Family>
using Kernel = bool (*)(const Family&, const void*, void*, ApiUInt32, unsigned char*, ETempType);

template <class Family, class In, class Out>
bool RunKernel(const Family& family, const void* in, void* out, ApiUInt32 n, unsigned char* status,
               ETempType type) {
    return CountsToTemp<In, Out>(family, static_cast<const In*>(in), static_cast<Out*>(out), n,
                                 status, type);
}

template <class Family>
using KernelTable = std::array<std::array<Kernel<Family>, kDataTypeCount>, kDataTypeCount>;

template <class Family, class In, std::size_t... OutCodes>
constexpr std::array<Kernel<Family>, kDataTypeCount> KernelRow(std::index_sequence<OutCodes...>) {
    return {&RunKernel<Family, In, ElementType<OutCodes>>...};
}

template <class Family, std::size_t... InCodes>
constexpr KernelTable<Family> BuildKernelTable(std::index_sequence<InCodes...> codes) {
    return {{KernelRow<Family, ElementType<InCodes>>(codes)...}};
}

template <class Family>
inline constexpr KernelTable<Family>
    kKernelTable = BuildKernelTable<Family>(std::make_index_sequence<kDataTypeCount>{});

} // namespace vz::typed
