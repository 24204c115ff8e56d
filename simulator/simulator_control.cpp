#include "simulator_control.h"

#include "event_broadcast.h"
#include "fault_table.h"

namespace camsim {

HRESULT SimulatorControl::PostEvent(ULONGLONG value) {
    return PostEventToListeners(value);
}

HRESULT SimulatorControl::ProcessId(ULONG* pid) {
    if (pid == nullptr) {
        return E_POINTER;
    }
    *pid = GetCurrentProcessId();
    return S_OK;
}

HRESULT SimulatorControl::SetFault(ULONG slot, LONG mode) {
    return SetSlotFault(slot, mode, 0);
}

HRESULT SimulatorControl::SetFaultAfter(ULONG slot, LONG mode, ULONG passes) {
    return SetSlotFault(slot, mode, passes);
}

} // namespace camsim
