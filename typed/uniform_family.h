// Uniform-preset family: every pixel is looked up in the LUT of one preset.
#pragma once

#include "lut_engine.h"
#include "lut_sources.h"

namespace vz::typed {

template <LutEngine E> struct UniformPreset {
    E& engine;
    unsigned char preset;

    // The preset's LUT, and only it, is brought up to date.
    bool Refresh() const { return engine.UpdateLUT(preset); }
    FixedLut Luts() const { return {{engine.LutOutput(preset), engine.LutStatus(preset)}}; }
};

} // namespace vz::typed
