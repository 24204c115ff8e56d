// The 10 x 10 kernel tables, built at compile time: cell [a][b] is the kernel of its family for
// input element type a and output element type b. Buffer pointers are typed only inside a cell.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "element_types.h"
#include "keyed_kernel.h"
#include "per_pixel_kernel.h"
#include "uniform_kernel.h"

namespace vz::typed {

template <LutEngine E> struct UniformFamily {
    using Kernel = bool (*)(E&, unsigned char, const void*, void*, ApiUInt32, unsigned char*,
                            ETempType);
    template <class In, class Out>
    static bool Run(E& engine, unsigned char preset, const void* in, void* out, ApiUInt32 n,
                    unsigned char* status, ETempType type) {
        return CountsToTemp<In, Out>(engine, preset, static_cast<const In*>(in),
                                     static_cast<Out*>(out), n, status, type);
    }
};

template <LutEngine E> struct PerPixelFamily {
    using Kernel = bool (*)(E&, const void*, const unsigned char*, void*, ApiUInt32, unsigned char*,
                            ETempType);
    template <class In, class Out>
    static bool Run(E& engine, const void* in, const unsigned char* presetMap, void* out,
                    ApiUInt32 n, unsigned char* status, ETempType type) {
        return CountsToTemp<In, Out>(engine, static_cast<const In*>(in), presetMap,
                                     static_cast<Out*>(out), n, status, type);
    }
};

template <LutEngine E> struct KeyedFamily {
    using Kernel = bool (*)(E&, const void*, const ApiUInt32*, const unsigned char*, void*,
                            ApiUInt32, unsigned char*, ETempType);
    template <class In, class Out>
    static bool Run(E& engine, const void* in, const ApiUInt32* pixelKeys,
                    const unsigned char* keyToPreset, void* out, ApiUInt32 n, unsigned char* status,
                    ETempType type) {
        return CountsToTemp<In, Out>(engine, static_cast<const In*>(in), pixelKeys, keyToPreset,
                                     static_cast<Out*>(out), n, status, type);
    }
};

template <class Family>
using KernelTable = std::array<std::array<typename Family::Kernel, kDataTypeCount>, kDataTypeCount>;

template <class Family, class In, std::size_t... OutCodes>
constexpr std::array<typename Family::Kernel, kDataTypeCount>
KernelRow(std::index_sequence<OutCodes...>) {
    return {&Family::template Run<In, ElementType<OutCodes>>...};
}

template <class Family, std::size_t... InCodes>
constexpr KernelTable<Family> BuildKernelTable(std::index_sequence<InCodes...> codes) {
    return {{KernelRow<Family, ElementType<InCodes>>(codes)...}};
}

template <class Family>
inline constexpr KernelTable<Family>
    kKernelTable = BuildKernelTable<Family>(std::make_index_sequence<kDataTypeCount>{});

} // namespace vz::typed
