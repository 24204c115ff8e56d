#include "fault_table.h"

#include <array>
#include <atomic>

namespace camsim {

namespace {

constexpr ULONG kSlotCount = kSlotIntegrationTimeAt + 1;

// Calls arrive on the server's one apartment thread; atomics keep it safe if that changes.
std::array<std::atomic<LONG>, kSlotCount> gFaults{};

bool IsFaultableSlot(ULONG slot) {
    switch (slot) {
    case kSlotSetAux:
    case kSlotComputeLut:
    case kSlotSetObjectParams:
    case kSlotTempToCounts:
    case kSlotIsReady:
    case kSlotLoadFactoryKind2:
    case kSlotSetIntegrationTime:
    case kSlotLoadFactory:
    case kSlotIntegrationTimeAt:
        return true;
    default:
        return false;
    }
}

} // namespace

HRESULT SetSlotFault(ULONG slot, LONG mode) {
    if (!IsFaultableSlot(slot) || mode < kFaultNone || mode > kFaultNotOk) {
        return E_INVALIDARG;
    }
    gFaults[slot] = mode;
    return S_OK;
}

std::optional<HRESULT> InjectedFault(OsCalibrationSlot slot, BOOL* ok) {
    switch (gFaults[slot].load()) {
    case kFaultFail:
        return E_FAIL;
    case kFaultNotOk:
        if (ok == nullptr) {
            return E_FAIL;
        }
        *ok = FALSE;
        return S_OK;
    default:
        return std::nullopt;
    }
}

} // namespace camsim
