// The engine's one-time set-up and its LUT rebuild, shared by CBroadCal's members.
#pragma once

#include "broadcal_state.h"

namespace vz {

// Set-up tried once for the engine's life: true at once when it was done, false at once when it
// failed before; otherwise runs attempt. The two flags are set together on success (ready, and
// tried cleared); a failed attempt leaves tried set.
template <class Attempt> bool TryOnce(bool& ready, bool& tried, Attempt attempt) {
    if (ready) {
        return true;
    }
    if (tried) {
        return false;
    }
    tried = true;
    if (!attempt()) {
        return false;
    }
    ready = true;
    tried = false;
    return true;
}

// Obtains the four calibration objects and asks each whether it is ready. Tried once for the
// engine's life: after a failure it answers false without contacting the server again.
bool EnsureService(BroadCalState& state);

// Creates the shared counts buffer and the four temperature buffers. A failed creation is final;
// what was made before the failure is kept for the destructor to release.
bool EnsureBuffers(BroadCalState& state);

// Rebuilds the preset's LUT through the server if it is dirty; true when it is current after.
// A failed rebuild leaves it dirty, to be tried again on the next use.
bool UpdateLut(BroadCalState& state, unsigned char preset);

// How a range query treats the server calls that reload the preset's object for the queried
// integration time. kLenient ignores their results and scans the table in the LUT unit, as
// CBroadCal::GetTempRangeFromIntTime does; kStrict fails when one fails, and scans a table built
// in Celsius, the unit of the range.
enum class RangeMode { kLenient, kStrict };

// The temperature range the preset covers at integration time intTime. Leaves the preset's object
// loaded for intTime and its LUT dirty or built for it.
bool TempRangeAt(BroadCalState& state, unsigned char preset, unsigned long intTime, RangeMode mode,
                 float& minTemp, float& maxTemp);

} // namespace vz
