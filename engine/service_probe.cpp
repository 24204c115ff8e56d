#include "broadcal_steps.h"
#include "calibration_service.h"

namespace vz {

bool EnsureService(BroadCalState& state) {
    return TryOnce(state.serviceReady, state.serviceTried, [&state] {
        for (COstrelCal& cal : state.calibration) {
            cal = GetOstrelCal();
            if (!cal || !service::IsReady(cal)) {
                return false;
            }
        }
        return true;
    });
}

} // namespace vz
