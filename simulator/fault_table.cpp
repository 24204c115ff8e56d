#include "fault_table.h"

#include <array>
#include <atomic>

namespace camsim {

namespace {

constexpr ULONG kSlotCount = kSlotIntegrationTimeAt + 1;

// Calls arrive on the server's one apartment thread; atomics keep it safe if that changes.
std::array<std::atomic<LONG>, kSlotCount> gFaults{};
// Calls of each slot that still succeed before its fault takes effect.
std::array<std::atomic<ULONG>, kSlotCount> gPasses{};

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

HRESULT SetSlotFault(ULONG slot, LONG mode, ULONG passes) {
    if (!IsFaultableSlot(slot) || mode < kFaultNone || mode > kFaultNotOk) {
        return E_INVALIDARG;
    }
    gPasses[slot] = passes;
    gFaults[slot] = mode;
    return S_OK;
}

std::optional<HRESULT> InjectedFault(OsCalibrationSlot slot, BOOL* ok) {
    const LONG mode = gFaults[slot].load();
    if (mode != kFaultNone && gPasses[slot] > 0) {
        --gPasses[slot];
        return std::nullopt;
    }
    switch (mode) {
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
