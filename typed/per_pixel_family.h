// Per-pixel-preset family: pixel k is looked up in the LUT of preset presetMap[k].
#pragma once

#include "lut_engine.h"
#include "lut_sources.h"

namespace vz::typed {

template <LutEngine E> struct PresetMap {
    E& engine;
    const unsigned char* presetMap;

    // The active presets are brought up to date, not those the map names; pixels of different
    // presets may be interleaved freely.
    bool Refresh() const { return RefreshActiveLUTs(engine); }
    MappedLuts Luts() const {
        MappedLuts luts{{}, presetMap};
        AllPresetLuts(engine, luts.presets);
        return luts;
    }
};

} // namespace vz::typed
