// The engine's state as the conversion kernels see it: refresh a preset, read its tables.
#pragma once

#include "broadcal_state.h"
#include "broadcal_steps.h"
#include "lut_engine.h"

namespace vz {

class EngineLuts {
public:
    explicit EngineLuts(BroadCalState& state) : mState(state) {}

    bool UpdateLUT(unsigned char preset) { return UpdateLut(mState, preset); }
    const float* LutOutput(unsigned char preset) const { return mState.lutOutput[preset].get(); }
    const unsigned char* LutStatus(unsigned char preset) const {
        return mState.lutStatus[preset].get();
    }
    ETempType LutTempType() const { return mState.lutTempType; }
    bool IsPresetActive(unsigned char preset) const { return mState.activePresets[preset]; }

private:
    BroadCalState& mState;
};

static_assert(typed::LutEngine<EngineLuts>);

} // namespace vz
