// Keyed-preset kernels: pixel k is looked up in the LUT of preset keyToPreset[pixelKeys[k]].
#pragma once

#include "lut_engine.h"
#include "pixel_loops.h"

namespace vz::typed {

// The key is an unsigned index into the caller's table, unchecked.
template <LutEngine E> struct KeyedLuts {
    E& engine;
    const ApiUInt32* pixelKeys;
    const unsigned char* keyToPreset;
    LutPair At(std::size_t k) const {
        const unsigned char preset = keyToPreset[pixelKeys[k]];
        return {engine.LutOutput(preset), engine.LutStatus(preset)};
    }
};

// Refreshes the active presets (not those the keys reach) first; when that fails nothing is
// written, even for n = 0.
template <class In, class Out, LutEngine E>
bool CountsToTemp(E& engine, const In* in, const ApiUInt32* pixelKeys,
                  const unsigned char* keyToPreset, Out* out, ApiUInt32 n, unsigned char* status,
                  ETempType type) {
    if (!RefreshActiveLUTs(engine)) {
        return false;
    }
    const KeyedLuts<E> luts{engine, pixelKeys, keyToPreset};
    LookUpPixels(in, out, n, status, luts, engine.LutTempType(), type);
    return true;
}

} // namespace vz::typed
