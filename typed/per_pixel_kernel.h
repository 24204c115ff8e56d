// Per-pixel-preset kernels: pixel k is looked up in the LUT of preset presetMap[k].
#pragma once

#include "lut_engine.h"
#include "pixel_loops.h"

namespace vz::typed {

// Presets come from the map for every pixel, unchecked: pixels of different presets may be
// interleaved freely.
template <LutEngine E> struct PresetMapLuts {
    E& engine;
    const unsigned char* presetMap;
    LutPair At(std::size_t k) const {
        const unsigned char preset = presetMap[k];
        return {engine.LutOutput(preset), engine.LutStatus(preset)};
    }
};

// Refreshes the active presets (not those the map names) first; when that fails nothing is
// written, even for n = 0.
template <class In, class Out, LutEngine E>
bool CountsToTemp(E& engine, const In* in, const unsigned char* presetMap, Out* out, ApiUInt32 n,
                  unsigned char* status, ETempType type) {
    if (!RefreshActiveLUTs(engine)) {
        return false;
    }
    const PresetMapLuts<E> luts{engine, presetMap};
    LookUpPixels(in, out, n, status, luts, engine.LutTempType(), type);
    return true;
}

} // namespace vz::typed
