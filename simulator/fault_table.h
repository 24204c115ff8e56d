// Failures injected into the calibration slots by the test controls, shared by every
// calibration object of the server process.
#pragma once

#include <windows.h>

#include <optional>

namespace camsim {

// Vtable slots of IOsCalibration that can be made to fail.
enum CalibrationSlot : ULONG {
    kSlotSetAux = 8,
    kSlotComputeLut = 9,
    kSlotSetObjectParams = 10,
    kSlotTempToCounts = 13,
    kSlotIsReady = 14,
    kSlotLoadFactoryKind2 = 15,
    kSlotSetIntegrationTime = 16,
    kSlotLoadFactory = 17,
    kSlotIntegrationTimeAt = 18,
};

enum FaultMode : LONG {
    kFaultNone = 0,
    kFaultFail = 1,  // the call returns E_FAIL
    kFaultNotOk = 2, // the call returns S_OK with its success flag 0
};

// Sets the fault of one slot for the whole process; E_INVALIDARG for other slots or modes.
HRESULT SetFault(ULONG slot, LONG mode);

// The result a call of `slot` must return instead of doing its work, if a fault is set.
// `ok` is the call's success flag, or null for a slot without one (which then fails).
std::optional<HRESULT> InjectedFault(CalibrationSlot slot, BOOL* ok);

} // namespace camsim
