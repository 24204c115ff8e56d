// Failures injected into the calibration slots by the test controls, shared by every
// calibration object of the server process.
#pragma once

#include <windows.h>

#include <optional>

#include <server_slots.h>

namespace camsim {

enum FaultMode : LONG {
    kFaultNone = 0,
    kFaultFail = 1,  // the call returns E_FAIL
    kFaultNotOk = 2, // the call returns S_OK with its success flag 0
};

// Sets the fault of one calibration slot for the whole process, taking effect after `passes`
// more calls of the slot have succeeded; E_INVALIDARG for other slots or modes.
HRESULT SetSlotFault(ULONG slot, LONG mode, ULONG passes);

// The result a call of `slot` must return instead of doing its work, if a fault is set.
// `ok` is the call's success flag, or null for a slot without one (which then fails).
std::optional<HRESULT> InjectedFault(OsCalibrationSlot slot, BOOL* ok);

} // namespace camsim
