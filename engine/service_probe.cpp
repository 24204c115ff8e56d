#include "broadcal_steps.h"
#include "calibration_service.h"

namespace vz {

bool EnsureService(BroadCalState& state) {
    if (state.serviceReady) {
        return true;
    }
    if (state.serviceTried) {
        return false;
    }
    state.serviceTried = true;
    for (COstrelCal& cal : state.calibration) {
        cal = GetOstrelCal();
        if (!cal || !service::IsReady(cal)) {
            return false;
        }
    }
    state.serviceReady = true;
    state.serviceTried = false;
    return true;
}

} // namespace vz
