// Per-pixel-preset family: pixel k is looked up in the LUT of preset presetMap[k].
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

template <LutEngine E> struct PresetMap {
    E& engine;
    const unsigned char* presetMap;

    // The active presets are brought up to date, not those the map names.
    bool Refresh() const { return RefreshActiveLUTs(engine); }
    PresetMapLuts<E> Luts() const { return {engine, presetMap}; }
};

} // namespace vz::typed
