#include "engine_access.h"

#include "broadcal_state.h"
#include "broadcal_steps.h"
#include "calibration_service.h"

namespace vz {

// The engine's friend: its state, for the functions below.
struct BroadCalAccess {
    static BroadCalState& State(CBroadCal& engine) { return *engine.mState; }
};

namespace {

// Loads the preset's object with what the engine holds for it, as SetBroadCal and
// SetObjectParams left it.
bool ReloadPreset(BroadCalState& state, unsigned char preset) {
    COstrelCal& cal = state.calibration[preset];
    const reduce::CQuilloFactoryCalReduceObject& record = state.factoryCal[preset];
    state.lutDirty[preset] = true;
    return service::IsReady(cal) && service::LoadFactory(cal, record) &&
           service::SetIntegrationTime(cal, record.integrationTime) &&
           service::SetAux(cal, record.calAux) &&
           (!state.objectParamsSent || service::SetObjectParams(cal, state.objectParams));
}

} // namespace

bool IsLutCurrent(CBroadCal& engine, unsigned char preset) {
    return !BroadCalAccess::State(engine).lutDirty[preset];
}

bool IsPresetActive(CBroadCal& engine, unsigned char preset) {
    return BroadCalAccess::State(engine).activePresets[preset];
}

bool TempRangeRestoringPreset(CBroadCal& engine, unsigned char preset, unsigned long intTime,
                              float& minTemp, float& maxTemp, bool& restored) {
    BroadCalState& state = BroadCalAccess::State(engine);
    float low = 0.0f, high = 0.0f;
    const bool answered = TempRangeAt(state, preset, intTime, RangeMode::kStrict, low, high);
    restored = !state.serviceReady || ReloadPreset(state, preset);
    if (!answered || !restored) {
        return false;
    }
    minTemp = low;
    maxTemp = high;
    return true;
}

} // namespace vz
