// Calling the three kernel families the way the engine does, through their dispatchers, with a
// record of which preset each pixel is meant to be looked up in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>
#include <vector>

#include "memory_engine.h"

namespace vz::testing {

enum class Family { Uniform, PerPixel, Keyed };
inline const char* const kFamilyNames[] = {"Uniform", "PerPixel", "Keyed"};

// How the pixels of one call name their presets.
struct Routing {
    Family family = Family::Uniform;
    unsigned char preset = 2;
    std::vector<unsigned char> presetMap;
    std::vector<ApiUInt32> pixelKeys;
    std::vector<unsigned char> keyToPreset;

    unsigned char PresetOf(std::size_t k) const {
        return family == Family::Uniform    ? preset
               : family == Family::PerPixel ? presetMap[k]
                                            : keyToPreset[pixelKeys[k]];
    }
};

// Pixels spread over all four presets; the key table is exactly long enough for key 1000.
inline Routing MixedRouting(Family family, std::size_t n) {
    Routing routing;
    routing.family = family;
    for (std::size_t k = 0; k < n; ++k) {
        routing.presetMap.push_back(static_cast<unsigned char>((3 * k + 1) % 4));
        routing.pixelKeys.push_back(k == 0 ? 1000 : static_cast<ApiUInt32>(37 * k % 1001));
    }
    for (unsigned key = 0; key <= 1000; ++key) {
        routing.keyToPreset.push_back(static_cast<unsigned char>((7 * key + 3) % 4));
    }
    return routing;
}

inline Routing UniformRouting(unsigned char preset) {
    Routing routing;
    routing.preset = preset;
    return routing;
}

// The family's dispatcher on the engine; instantiated once, in kernel_calls.cpp.
bool Convert(MemoryEngine& engine, const Routing& routing, STypedData in, STypedData out,
             ApiUInt32 n, unsigned char* status, ETempType type);

// The element type of each code, written out here rather than taken from the code under test.
using CodedTypes = std::tuple<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                              std::uint32_t, std::int64_t, std::uint64_t, float, double>;

template <class F, std::size_t... Codes>
void WithElementType(unsigned code, F&& f, std::index_sequence<Codes...>) {
    ((code == Codes ? f(std::tuple_element_t<Codes, CodedTypes>{}) : void()), ...);
}

// Calls f with a value of the element type of code.
template <class F> void WithElementType(unsigned code, F&& f) {
    WithElementType(code, f, std::make_index_sequence<std::tuple_size_v<CodedTypes>>{});
}

inline const char* const kElementTypeNames[] = {"Int8",   "UInt8", "Int16",  "UInt16", "Int32",
                                                "UInt32", "Int64", "UInt64", "Float",  "Double"};

} // namespace vz::testing
