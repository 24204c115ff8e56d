// Keyed-preset family: pixel k is looked up in the LUT of preset keyToPreset[pixelKeys[k]].
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

template <LutEngine E> struct KeyedPresets {
    E& engine;
    const ApiUInt32* pixelKeys;
    const unsigned char* keyToPreset;

    // The active presets are brought up to date, not those the keys reach.
    bool Refresh() const { return RefreshActiveLUTs(engine); }
    KeyedLuts<E> Luts() const { return {engine, pixelKeys, keyToPreset}; }
};

} // namespace vz::typed
