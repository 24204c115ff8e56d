#include "broadcal_state.h"
#include "broadcal_steps.h"
#include "calibration_service.h"

namespace vz {

CBroadCal::CBroadCal() : mState(new BroadCalState) {}

CBroadCal::~CBroadCal() {
    delete mState;
}

CBroadCal& CBroadCal::operator=(const CBroadCal& other) {
    mState = other.mState;
    return *this;
}

bool CBroadCal::isAvailable() {
    return EnsureService(*mState);
}

bool CBroadCal::SetBroadCal(unsigned char preset, reduce::CQuilloFactoryCalReduceObject* record) {
    BroadCalState& state = *mState;
    if (!EnsureService(state)) {
        return false;
    }
    // Every load gets a new server object, so the presets never share a calibration.
    COstrelCal& cal = state.calibration[preset];
    cal.Release();
    cal = GetOstrelCal();
    if (!service::IsReady(cal) || !service::LoadFactory(cal, *record) ||
        !service::SetIntegrationTime(cal, record->integrationTime)) {
        return false;
    }
    // The object now differs from what the LUT and the sent parameters were made for, even if
    // the last call fails.
    state.lutDirty[preset] = true;
    state.objectParamsSent = false;
    if (!service::SetAux(cal, record->calAux)) {
        return false;
    }
    state.factoryCal[preset] = *record;
    return true;
}

bool CBroadCal::GetBroadCal(unsigned char preset, reduce::CQuilloFactoryCalReduceObject* record) {
    if (preset >= kPresetCount) {
        return false;
    }
    *record = mState->factoryCal[preset];
    return true;
}

bool CBroadCal::SetObjectParams(reduce::CObjectParametersReduceObject* params) {
    BroadCalState& state = *mState;
    if (!EnsureService(state)) {
        return false;
    }
    const reduce::CObjectParametersReduceObject& sent = state.objectParams;
    if (state.objectParamsSent && params->objFactorA == sent.objFactorA &&
        params->objTempA == sent.objTempA && params->objTempB == sent.objTempB &&
        params->objFactorB == sent.objFactorB) {
        state.objectParams = *params;
        return true;
    }
    // Until all four objects hold the new values, what the objects hold is not what was sent:
    // a failure part of the way must not leave the old values counted as sent.
    state.objectParamsSent = false;
    for (unsigned p = 0; p < kPresetCount; ++p) {
        state.lutDirty[p] = true;
        if (!service::SetObjectParams(state.calibration[p], *params)) {
            return false;
        }
    }
    state.objectParamsSent = true;
    state.objectParams = *params;
    return true;
}

bool CBroadCal::GetObjectParams(reduce::CObjectParametersReduceObject* params) {
    *params = mState->objectParams;
    return true;
}

bool CBroadCal::UpdateLUT(unsigned char preset) {
    return UpdateLut(*mState, preset);
}

float* CBroadCal::GetLUTOutput(unsigned char preset) {
    return UpdateLut(*mState, preset) ? mState->lutOutput[preset].get() : nullptr;
}

unsigned char* CBroadCal::GetLUTStatus(unsigned char preset) {
    return UpdateLut(*mState, preset) ? mState->lutStatus[preset].get() : nullptr;
}

ETempType CBroadCal::lutTempType() {
    return mState->lutTempType;
}

void CBroadCal::setLUTTempType(ETempType type) {
    if (type == mState->lutTempType) {
        return;
    }
    mState->lutTempType = type;
    for (bool& dirty : mState->lutDirty) {
        dirty = true;
    }
}

bool CBroadCal::SetActivePresets(bool* const flags) {
    for (unsigned p = 0; p < kPresetCount; ++p) {
        mState->activePresets[p] = flags[p];
    }
    return true;
}

} // namespace vz
