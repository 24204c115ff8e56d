// Uniform-preset kernels: every pixel is looked up in the LUT of one preset.
#pragma once

#include "lut_engine.h"
#include "pixel_loops.h"

namespace vz::typed {

struct FixedLut {
    LutPair lut;
    LutPair At(std::size_t) const { return lut; }
};

// Brings the preset's LUT up to date first; when that fails nothing is written, even for n = 0.
template <class In, class Out, LutEngine E>
bool CountsToTemp(E& engine, unsigned char preset, const In* in, Out* out, ApiUInt32 n,
                  unsigned char* status, ETempType type) {
    if (!engine.UpdateLUT(preset)) {
        return false;
    }
    const FixedLut luts{{engine.LutOutput(preset), engine.LutStatus(preset)}};
    LookUpPixels(in, out, n, status, luts, engine.LutTempType(), type);
    return true;
}

} // namespace vz::typed
