// What the kernels need from an engine: table refresh and raw access to its LUTs.
#pragma once

#include <concepts>

#include "lut_sources.h"
#include "ostrel_types.h"

namespace vz::typed {

template <class E>
concept LutEngine = requires(E& engine, unsigned char preset) {
    // Rebuilds the preset's LUT if it is dirty; true when it is current afterwards.
    { engine.UpdateLUT(preset) } -> std::same_as<bool>;
    // The preset's kLutSize temperatures and status bytes as they stand, without a refresh.
    { engine.LutOutput(preset) } -> std::convertible_to<const float*>;
    { engine.LutStatus(preset) } -> std::convertible_to<const unsigned char*>;
    // The unit all LUTs hold their temperatures in.
    { engine.LutTempType() } -> std::same_as<ETempType>;
    { engine.IsPresetActive(preset) } -> std::same_as<bool>;
};

// Brings every active preset's LUT up to date, in preset order; stops at the first failure
// (presets rebuilt before it stay rebuilt).
template <LutEngine E> bool RefreshActiveLUTs(E& engine) {
    for (unsigned char preset = 0; preset < kPresetCount; ++preset) {
        if (engine.IsPresetActive(preset) && !engine.UpdateLUT(preset)) {
            return false;
        }
    }
    return true;
}

// The tables of every preset as they stand, for pixels that pick their preset one by one.
template <LutEngine E> void AllPresetLuts(const E& engine, LutPair (&presets)[kPresetCount]) {
    for (unsigned char preset = 0; preset < kPresetCount; ++preset) {
        presets[preset] = {engine.LutOutput(preset), engine.LutStatus(preset)};
    }
}

} // namespace vz::typed
