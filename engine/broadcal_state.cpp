#include "broadcal_state.h"

namespace vz {

BroadCalState::BroadCalState() {
    for (bool& dirty : lutDirty) {
        dirty = true;
    }
}

// The shared counts buffer goes first, then each preset's buffer, status bytes and calibration
// object in preset order; the records and handles that are left go with the members.
BroadCalState::~BroadCalState() {
    countsBufferName.reset();
    countsView.reset();
    countsMapping.reset();
    for (unsigned p = 0; p < kPresetCount; ++p) {
        tempBufferName[p].reset();
        lutOutput[p].reset();
        tempMapping[p].reset();
        calibration[p].Release();
        lutStatus[p].reset();
    }
}

} // namespace vz
