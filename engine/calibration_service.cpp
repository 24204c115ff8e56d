#include "calibration_service.h"

#include <server_slots.h>

#include <cstdio>

#include "failure_note.h"
#include "lut_bounds.h"

namespace vz::service {
namespace {

// The fixed arguments the server expects: the table size, its step and its largest count.
constexpr ULONG kEntryCount = kLutSize;
constexpr ULONG kEntryStep = 1;
constexpr ULONG kLargestCount = kLutSize - 1;
// The server's mode argument of CalSetObjectParams and CalIntegrationTimeAt.
constexpr LONG kMode = 1;

// The server method a call reaches, for the failure note.
struct Slot {
    const char* name;
    int number;
};

void NoteFailure(Slot slot, HRESULT hr) noexcept {
    char call[64];
    std::snprintf(call, sizeof call, "%s (slot %d)", slot.name, slot.number);
    failure_note::WriteFailedCall(call, hr);
}

void NoteNotDone(Slot slot) noexcept {
    char text[96];
    std::snprintf(text, sizeof text, "%s (slot %d) answered that it was not done", slot.name,
                  slot.number);
    failure_note::Write(text);
}

// Calls a method with a success flag; the flag counts only when the HRESULT is not negative.
// A handle without an object has its creation's failure noted already.
template <class Method> bool CallWithFlag(COstrelCal& cal, Slot slot, Method method) {
    IOsCalibration* object = cal.operator->();
    if (object == nullptr) {
        return false;
    }
    BOOL ok = FALSE;
    const HRESULT hr = method(*object, &ok);
    if (hr < 0) {
        NoteFailure(slot, hr);
    } else if (ok == 0) {
        NoteNotDone(slot);
    }
    return hr >= 0 && ok != 0;
}

} // namespace

bool IsReady(COstrelCal& cal) {
    IOsCalibration* object = cal.operator->();
    if (object == nullptr) {
        return false;
    }
    const HRESULT hr = object->CalIsReady();
    if (hr < 0) {
        NoteFailure({"CalIsReady", kSlotIsReady}, hr);
    }
    return hr >= 0;
}

bool LoadFactory(COstrelCal& cal, const reduce::CQuilloFactoryCalReduceObject& r) {
    // The server takes the high count before the low one and the maximum temperature first.
    const Slot slot = r.calKind == 2 ? Slot{"CalLoadFactoryKind2", kSlotLoadFactoryKind2}
                                     : Slot{"CalLoadFactory", kSlotLoadFactory};
    return CallWithFlag(cal, slot, [&](IOsCalibration& object, BOOL* ok) {
        const float* c = r.calCoef;
        return r.calKind == 2 ? object.CalLoadFactoryKind2(r.calKind, c[0], c[1], c[2], c[3], c[4],
                                                           c[5], r.countsHigh, r.countsLow,
                                                           r.tempMaxK, r.tempMinK, ok)
                              : object.CalLoadFactory(r.calKind, c[0], c[1], c[2], c[3], c[4], c[5],
                                                      r.countsHigh, r.countsLow, r.tempMaxK,
                                                      r.tempMinK, r.calCoefExtra, ok);
    });
}

bool SetIntegrationTime(COstrelCal& cal, float integrationTime) {
    return CallWithFlag(cal, {"CalSetIntegrationTime", kSlotSetIntegrationTime},
                        [&](IOsCalibration& object, BOOL* ok) {
                            return object.CalSetIntegrationTime(static_cast<LONG>(integrationTime),
                                                                ok);
                        });
}

bool SetAux(COstrelCal& cal, float aux) {
    return CallWithFlag(cal, {"CalSetAux", kSlotSetAux}, [&](IOsCalibration& object, BOOL* ok) {
        return object.CalSetAux(aux, ok);
    });
}

bool SetObjectParams(COstrelCal& cal, const reduce::CObjectParametersReduceObject& params) {
    const float factorA = params.objFactorA == 0.0f ? 1.0f : params.objFactorA;
    const float factorB = params.objFactorB == 0.0f ? 1.0f : params.objFactorB;
    const float tempA = KelvinLimitToCelsius(params.objTempA);
    const float tempB = KelvinLimitToCelsius(params.objTempB);
    return CallWithFlag(
        cal, {"CalSetObjectParams", kSlotSetObjectParams}, [&](IOsCalibration& object, BOOL* ok) {
            return object.CalSetObjectParams(factorA, tempA, factorB, tempB, kMode, ok);
        });
}

bool ComputeLut(COstrelCal& cal, BSTR countsBuffer, BSTR tempBuffer) {
    return CallWithFlag(cal, {"CalComputeLUT", kSlotComputeLut},
                        [&](IOsCalibration& object, BOOL* ok) {
                            return object.CalComputeLUT(kEntryCount, kEntryStep, kLargestCount,
                                                        countsBuffer, tempBuffer, ok);
                        });
}

bool TempToCounts(COstrelCal& cal, float tempCelsius, unsigned short* counts) {
    return CallWithFlag(cal, {"CalTempToCounts", kSlotTempToCounts},
                        [&](IOsCalibration& object, BOOL* ok) {
                            return object.CalTempToCounts(tempCelsius, counts, ok);
                        });
}

bool IntegrationTimeAt(COstrelCal& cal, float tempK, float count, float* result) {
    return CallWithFlag(cal, {"CalIntegrationTimeAt", kSlotIntegrationTimeAt},
                        [&](IOsCalibration& object, BOOL* ok) {
                            return object.CalIntegrationTimeAt(tempK, count, result, kMode, ok);
                        });
}

} // namespace vz::service
