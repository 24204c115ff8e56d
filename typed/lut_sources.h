// Where each pixel of a call is looked up, resolved before the loop: plain data that the kernels
// of every instruction set read the same way.
#pragma once

#include <cstddef>

#include "ostrel_types.h"

namespace vz::typed {

// How a group of lanes reads one preset's table: an element at a time (scalar loads, the lanes
// put together in registers), or with the processor's gather instruction. Which is faster depends
// on the processor; tables that differ per pixel are always read an element at a time.
enum class Fetch { kLoads, kGather };

// The temperature and status tables one pixel is looked up in.
struct LutPair {
    const float* values;
    const unsigned char* status;
};

// Every pixel in the tables of one preset.
struct FixedLut {
    LutPair lut;
};

// Pixel k in the tables of preset presetMap[k], unchecked.
struct MappedLuts {
    LutPair presets[kPresetCount];
    const unsigned char* presetMap;
};

// Pixel k in the tables of preset keyToPreset[pixelKeys[k]]; keys index the caller's table as
// unsigned numbers, unchecked.
struct KeyedLuts {
    LutPair presets[kPresetCount];
    const ApiUInt32* pixelKeys;
    const unsigned char* keyToPreset;
};

} // namespace vz::typed

#include "isa_namespace.h"

OSTREL_ISA_BEGIN

inline LutPair LutAt(const FixedLut& luts, std::size_t) {
    return luts.lut;
}
inline LutPair LutAt(const MappedLuts& luts, std::size_t k) {
    return luts.presets[luts.presetMap[k]];
}
inline LutPair LutAt(const KeyedLuts& luts, std::size_t k) {
    return luts.presets[luts.keyToPreset[luts.pixelKeys[k]]];
}

OSTREL_ISA_END
