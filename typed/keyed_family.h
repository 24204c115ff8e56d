// Keyed-preset family: pixel k is looked up in the LUT of preset keyToPreset[pixelKeys[k]].
#pragma once

#include "lut_engine.h"
#include "lut_sources.h"

namespace vz::typed {

template <LutEngine E> struct KeyedPresets {
    E& engine;
    const ApiUInt32* pixelKeys;
    const unsigned char* keyToPreset;

    // The active presets are brought up to date, not those the keys reach.
    bool Refresh() const { return RefreshActiveLUTs(engine); }
    KeyedLuts Luts() const {
        KeyedLuts luts{{}, pixelKeys, keyToPreset};
        AllPresetLuts(engine, luts.presets);
        return luts;
    }
};

} // namespace vz::typed
