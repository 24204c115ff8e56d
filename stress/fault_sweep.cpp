#include <camsim_control.h>
#include <server_slots.h>
#include <wrl/client.h>

#include "stress_modes.h"

namespace stress {
namespace {

constexpr unsigned long kCalibrationSlots[] = {
    kSlotSetAux,           kSlotComputeLut,       kSlotSetObjectParams,    kSlotTempToCounts,
    kSlotIsReady,          kSlotLoadFactoryKind2, kSlotSetIntegrationTime, kSlotLoadFactory,
    kSlotIntegrationTimeAt};
// The simulator's fault modes: the call returns E_FAIL, or S_OK with a zero success flag.
constexpr long kFaultModes[] = {1, 2};

// A fresh engine through the members a host uses, in its order; each member's result is kept,
// whatever the ones before it returned.
std::vector<std::pair<const char*, bool>> EngineMembers(const SampleCalibration& sample) {
    vz::CBroadCal engine;
    auto record = sample.record;
    auto params = sample.params;
    float temp = 0;
    unsigned short counts = 0;
    unsigned long minTime = 0, maxTime = 0;
    float minTemp = 0, maxTemp = 0;
    return {
        {"isAvailable", engine.isAvailable()},
        {"SetBroadCal", engine.SetBroadCal(0, &record)},
        {"SetObjectParams", engine.SetObjectParams(&params)},
        {"UpdateLUT", engine.UpdateLUT(0)},
        {"CountsToTemp", engine.CountsToTemp(0, 30000, &temp, nullptr, vz::eCelsius)},
        {"TempToCounts", engine.TempToCounts(0, 25.0f, &counts, vz::eCelsius)},
        {"GetIntegrationTimeRange", engine.GetIntegrationTimeRange(0, minTime, maxTime)},
        {"GetTempRangeFromIntTime",
         engine.GetTempRangeFromIntTime(0, static_cast<unsigned long>(record.integrationTime),
                                        minTemp, maxTemp)},
    };
}

bool AllSucceeded(const std::vector<std::pair<const char*, bool>>& results) {
    for (const auto& result : results) {
        if (!result.second) {
            return false;
        }
    }
    return true;
}

} // namespace

FaultFigures RunFaults(const SampleCalibration& sample) {
    FaultFigures figures;
    COstrelCal calibration = GetOstrelCal();
    Microsoft::WRL::ComPtr<ICamSimControl> control;
    if (calibration) {
        calibration->QueryInterface(IID_PPV_ARGS(&control));
    }
    figures.controlled = control != nullptr;
    if (!control) {
        return figures;
    }
    figures.rows.push_back({0, 0, EngineMembers(sample)});
    for (unsigned long slot : kCalibrationSlots) {
        for (long mode : kFaultModes) {
            if (control->SetFault(slot, mode) != S_OK) {
                continue;
            }
            figures.rows.push_back({slot, mode, EngineMembers(sample)});
            control->SetFault(slot, 0);
        }
    }
    figures.recovered = AllSucceeded(EngineMembers(sample));
    return figures;
}

} // namespace stress
