// Bounding of a freshly computed LUT to the calibrated range, with status marking and conversion
// to the engine's LUT unit.
#pragma once

#include <cstdint>

#include "ostrel_types.h"

namespace vz {

// The calibrated range of one preset, as its factory record gives it.
struct LutLimits {
    std::uint32_t countsLow;
    std::uint32_t countsHigh;
    float tempMinC;
    float tempMaxC;
};

// A factory record's kelvin limit in Celsius: subtracted in double, narrowed once.
inline float KelvinLimitToCelsius(float kelvin) {
    return static_cast<float>(static_cast<double>(kelvin) - 273.15);
}

// Bounds lut (kLutSize Celsius temperatures, edited in place) to limits with the safety margin,
// writes one ELUTStatus byte per entry into status (kLutSize bytes), then converts every entry
// to lutUnit. none is the in-house library's "no index" value (CUInt32::Max), which the edge
// searches store and the marking compares as a signed index.
//
// Records the engine does not validate (countsLow > countsHigh, counts beyond the table,
// unordered temperature limits) run as usual but never touch memory outside the two tables:
// a countsLow outside 0..65535 seeds the range scan with the nearest entry, the scan covers only
// entries inside the table, and an edge search starting beyond the table starts at its last entry.
void BoundLut(float* lut, unsigned char* status, const LutLimits& limits, ETempType lutUnit,
              std::uint32_t none);

} // namespace vz
