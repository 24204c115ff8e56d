#include <vz/uint32.h>

#include "broadcal_steps.h"
#include "calibration_service.h"
#include "lut_bounds.h"

namespace vz {

bool UpdateLut(BroadCalState& state, unsigned char preset) {
    if (!state.lutDirty[preset]) {
        return true;
    }
    if (!EnsureService(state) || !EnsureBuffers(state)) {
        return false;
    }
    if (!service::ComputeLut(state.calibration[preset], state.countsBufferName.get(),
                             state.tempBufferName[preset].get())) {
        return false;
    }
    const reduce::CQuilloFactoryCalReduceObject& record = state.factoryCal[preset];
    const LutLimits limits{record.countsLow, record.countsHigh,
                           KelvinLimitToCelsius(record.tempMinK),
                           KelvinLimitToCelsius(record.tempMaxK)};
    BoundLut(state.lutOutput[preset].get(), state.lutStatus[preset].get(), limits,
             state.lutTempType, CUInt32::Max);
    state.lutDirty[preset] = false;
    return true;
}

} // namespace vz
