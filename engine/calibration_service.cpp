#include "calibration_service.h"

#include "lut_bounds.h"

namespace vz::service {
namespace {

// The fixed arguments the server expects: the table size, its step and its largest count.
constexpr ULONG kEntryCount = kLutSize;
constexpr ULONG kEntryStep = 1;
constexpr ULONG kLargestCount = kLutSize - 1;
// The server's mode argument of CalSetObjectParams and CalIntegrationTimeAt.
constexpr LONG kMode = 1;

// Calls a method with a success flag; the flag counts only when the HRESULT is not negative.
template <class Method> bool CallWithFlag(COstrelCal& cal, Method method) {
    IOsCalibration* object = cal.operator->();
    if (object == nullptr) {
        return false;
    }
    BOOL ok = FALSE;
    const HRESULT hr = method(*object, &ok);
    return hr >= 0 && ok != 0;
}

} // namespace

bool IsReady(COstrelCal& cal) {
    IOsCalibration* object = cal.operator->();
    return object != nullptr && object->CalIsReady() >= 0;
}

bool LoadFactory(COstrelCal& cal, const reduce::CQuilloFactoryCalReduceObject& r) {
    // The server takes the high count before the low one and the maximum temperature first.
    return CallWithFlag(cal, [&](IOsCalibration& object, BOOL* ok) {
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
    return CallWithFlag(cal, [&](IOsCalibration& object, BOOL* ok) {
        return object.CalSetIntegrationTime(static_cast<LONG>(integrationTime), ok);
    });
}

bool SetAux(COstrelCal& cal, float aux) {
    return CallWithFlag(
        cal, [&](IOsCalibration& object, BOOL* ok) { return object.CalSetAux(aux, ok); });
}

bool SetObjectParams(COstrelCal& cal, const reduce::CObjectParametersReduceObject& params) {
    const float factorA = params.objFactorA == 0.0f ? 1.0f : params.objFactorA;
    const float factorB = params.objFactorB == 0.0f ? 1.0f : params.objFactorB;
    const float tempA = KelvinLimitToCelsius(params.objTempA);
    const float tempB = KelvinLimitToCelsius(params.objTempB);
    return CallWithFlag(cal, [&](IOsCalibration& object, BOOL* ok) {
        return object.CalSetObjectParams(factorA, tempA, factorB, tempB, kMode, ok);
    });
}

bool ComputeLut(COstrelCal& cal, BSTR countsBuffer, BSTR tempBuffer) {
    return CallWithFlag(cal, [&](IOsCalibration& object, BOOL* ok) {
        return object.CalComputeLUT(kEntryCount, kEntryStep, kLargestCount, countsBuffer,
                                    tempBuffer, ok);
    });
}

bool TempToCounts(COstrelCal& cal, float tempCelsius, unsigned short* counts) {
    return CallWithFlag(cal, [&](IOsCalibration& object, BOOL* ok) {
        return object.CalTempToCounts(tempCelsius, counts, ok);
    });
}

bool IntegrationTimeAt(COstrelCal& cal, float tempK, float count, float* result) {
    return CallWithFlag(cal, [&](IOsCalibration& object, BOOL* ok) {
        return object.CalIntegrationTimeAt(tempK, count, result, kMode, ok);
    });
}

} // namespace vz::service
