// An engine whose four LUTs live in ordinary memory. It records every refresh and can be told to
// fail the refresh of one preset.
#pragma once

#include <array>
#include <vector>

#include "ostrel_types.h"

namespace vz::testing {

struct MemoryEngine {
    bool UpdateLUT(unsigned char preset) {
        refreshes.push_back(preset);
        dirty[preset] = dirty[preset] && preset == failingPreset;
        return preset != failingPreset;
    }
    const float* LutOutput(unsigned char preset) const { return values[preset].data(); }
    const unsigned char* LutStatus(unsigned char preset) const { return status[preset].data(); }
    ETempType LutTempType() const { return unit; }
    bool IsPresetActive(unsigned char preset) const { return active[preset]; }

    using Tables = std::vector<float>;
    using Marks = std::vector<unsigned char>;
    std::array<Tables, kPresetCount> values{Tables(kLutSize), Tables(kLutSize), Tables(kLutSize),
                                            Tables(kLutSize)};
    std::array<Marks, kPresetCount> status{Marks(kLutSize), Marks(kLutSize), Marks(kLutSize),
                                           Marks(kLutSize)};
    std::array<bool, kPresetCount> dirty{true, true, true, true};
    std::array<bool, kPresetCount> active{true, true, true, true};
    int failingPreset = -1;
    std::vector<unsigned char> refreshes;
    ETempType unit = eCelsius;
};

} // namespace vz::testing
