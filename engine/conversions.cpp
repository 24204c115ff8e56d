#include <algorithm>
#include <cmath>
#include <cstdint>

#include "broadcal_steps.h"
#include "calibration_service.h"
#include "element_rules.h"
#include "engine_luts.h"
#include "lut_bounds.h"
#include "temp_units.h"
#include "typed_dispatch.h"

namespace vz {

bool CBroadCal::CountsToTemp(unsigned char preset, unsigned short counts, float* temp,
                             unsigned char* status, ETempType type) {
    return CountsToTemp(preset, STypedData{&counts, UInt16}, STypedData{temp, Float}, 1, status,
                        type);
}

bool CBroadCal::CountsToTemp(unsigned char preset, unsigned short* counts, float* temp,
                             unsigned long n, unsigned char* status, ETempType type) {
    return CountsToTemp(preset, STypedData{counts, UInt16}, STypedData{temp, Float}, n, status,
                        type);
}

bool CBroadCal::CountsToTemp(unsigned char preset, float* counts, float* temp, unsigned long n,
                             unsigned char* status, ETempType type) {
    return CountsToTemp(preset, STypedData{counts, Float}, STypedData{temp, Float}, n, status,
                        type);
}

bool CBroadCal::CountsToTemp(unsigned char preset, STypedData in, STypedData out, unsigned long n,
                             unsigned char* status, ETempType type) {
    EngineLuts luts(*mState);
    return typed::DispatchCountsToTemp(typed::UniformPreset<EngineLuts>{luts, preset}, in, out, n,
                                       status, type);
}

bool CBroadCal::CountsToTemp(STypedData in, const unsigned char* presetMap, STypedData out,
                             unsigned long n, unsigned char* status, ETempType type) {
    EngineLuts luts(*mState);
    return typed::DispatchCountsToTemp(typed::PresetMap<EngineLuts>{luts, presetMap}, in, out, n,
                                       status, type);
}

bool CBroadCal::CountsToTemp(STypedData in, const unsigned long* pixelKeys,
                             const unsigned char* keyToPreset, STypedData out, unsigned long n,
                             unsigned char* status, ETempType type) {
    EngineLuts luts(*mState);
    return typed::DispatchCountsToTemp(
        typed::KeyedPresets<EngineLuts>{luts, pixelKeys, keyToPreset}, in, out, n, status, type);
}

bool CBroadCal::TempToCounts(unsigned char preset, float temp, unsigned short* counts,
                             ETempType type) {
    if (!EnsureService(*mState)) {
        return false;
    }
    ConvertTemp(temp, type, eCelsius);
    return service::TempToCounts(mState->calibration[preset], temp, counts);
}

bool CBroadCal::GetIntegrationTimeRange(unsigned char preset, unsigned long& minTime,
                                        unsigned long& maxTime) {
    BroadCalState& state = *mState;
    if (!EnsureService(state)) {
        return false;
    }
    const reduce::CQuilloFactoryCalReduceObject& record = state.factoryCal[preset];
    float atHigh = 0.0f;
    float atLow = 0.0f;
    if (!service::IntegrationTimeAt(state.calibration[preset], record.tempMaxK,
                                    static_cast<float>(record.countsHigh), &atHigh) ||
        !service::IntegrationTimeAt(state.calibration[preset], record.tempMinK,
                                    static_cast<float>(record.countsLow), &atLow)) {
        return false;
    }
    minTime = static_cast<unsigned long>(typed::Truncate64(atLow));
    maxTime = static_cast<unsigned long>(typed::Truncate64(atHigh));
    return true;
}

namespace {

// Values within a thousandth of a degree of zero are reported as zero.
float SnapToZero(float value) {
    return std::fabs(double(value)) < 0.001 ? 0.0f : value;
}

} // namespace

bool TempRangeAt(BroadCalState& state, unsigned char preset, unsigned long intTime, RangeMode mode,
                 float& minTemp, float& maxTemp) {
    if (!EnsureService(state)) {
        return false;
    }
    const bool strict = mode == RangeMode::kStrict;
    reduce::CQuilloFactoryCalReduceObject working = state.factoryCal[preset];
    working.integrationTime = static_cast<float>(intTime);
    // Leniently, the object is reloaded for the queried time whatever it answers, and the rebuilt
    // table is the judge.
    COstrelCal& cal = state.calibration[preset];
    bool reloaded = service::IsReady(cal);
    reloaded = service::LoadFactory(cal, working) && reloaded;
    reloaded = service::SetIntegrationTime(cal, working.integrationTime) && reloaded;
    reloaded = service::SetAux(cal, working.calAux) && reloaded;
    if (strict && !reloaded) {
        return false;
    }
    state.lutDirty[preset] = true;
    // Strictly, the table is built in Celsius, the unit of the limits below, and so stays dirty
    // for the conversions, which read it in the LUT unit.
    const ETempType unit = state.lutTempType;
    if (strict) {
        state.lutTempType = eCelsius;
    }
    const bool built = UpdateLut(state, preset);
    state.lutTempType = unit;
    state.lutDirty[preset] = state.lutDirty[preset] || strict;
    if (!built) {
        return false;
    }

    // Counts beyond the table read its last entry.
    const float* lut = state.lutOutput[preset].get();
    const std::uint32_t low = std::min<std::uint32_t>(working.countsLow, kLutSize - 1);
    const std::uint32_t high = std::min<std::uint32_t>(working.countsHigh, kLutSize - 1);
    float lowest = lut[low];
    float highest = lut[low];
    if (working.countsLow <= working.countsHigh) {
        for (std::uint32_t i = low; i <= high; ++i) {
            lowest = std::min(lowest, lut[i]);
            highest = std::max(highest, lut[i]);
        }
    }
    const float limitLow = KelvinLimitToCelsius(working.tempMinK);
    const float limitHigh = KelvinLimitToCelsius(working.tempMaxK);
    lowest = std::max(lowest, limitLow);
    highest = std::max(std::min(highest, limitHigh), limitLow);
    lowest = std::min(lowest, limitHigh);
    minTemp = SnapToZero(lowest);
    maxTemp = SnapToZero(highest);
    return true;
}

bool CBroadCal::GetTempRangeFromIntTime(unsigned char preset, unsigned long intTime, float& minTemp,
                                        float& maxTemp) {
    return TempRangeAt(*mState, preset, intTime, RangeMode::kLenient, minTemp, maxTemp);
}

} // namespace vz
