#include "calibration_object.h"

#include <cmath>
#include <cstdint>

#include "calibration_inputs.h"
#include "mapped_table.h"

namespace camsim {

namespace {

// The only value of the mode arguments this server knows: apply the parameters as given, and
// answer the integration time in the record's unit.
constexpr LONG kStandardMode = 1;

constexpr ULONG kMaxEntries = 65536;

} // namespace

std::optional<HRESULT> CalibrationObject::BeginCall(OsCalibrationSlot slot, BOOL* ok) {
    if (ok == nullptr) {
        return E_POINTER;
    }
    *ok = FALSE;
    return InjectedFault(slot, ok);
}

HRESULT CalibrationObject::CalSetAux(float calAux, BOOL* ok) {
    if (const auto early = BeginCall(kSlotSetAux, ok)) {
        return *early;
    }
    *ok = mModel.SetAux(calAux);
    return S_OK;
}

HRESULT CalibrationObject::CalComputeLUT(ULONG entryCount, ULONG step, ULONG largestCount,
                                         BSTR countsBufferName, BSTR tempBufferName, BOOL* ok) {
    if (const auto early = BeginCall(kSlotComputeLut, ok)) {
        return *early;
    }
    if (entryCount == 0 || entryCount > kMaxEntries || step != 1 || largestCount > UINT16_MAX) {
        return S_OK;
    }
    const auto conversion = mModel.Current();
    if (!conversion) {
        return S_OK;
    }
    const auto counts =
        MappedTable::Open(countsBufferName, entryCount * sizeof(std::uint16_t), FILE_MAP_READ);
    const auto temperatures =
        MappedTable::Open(tempBufferName, entryCount * sizeof(float), FILE_MAP_WRITE);
    if (!counts || !temperatures) {
        return S_OK;
    }
    *ok = conversion->FillCelsius({static_cast<const std::uint16_t*>(counts->Data()), entryCount},
                                  static_cast<std::uint16_t>(largestCount),
                                  {static_cast<float*>(temperatures->Data()), entryCount});
    return S_OK;
}

HRESULT CalibrationObject::CalSetObjectParams(float factorA, float tempACelsius, float factorB,
                                              float tempBCelsius, LONG mode, BOOL* ok) {
    if (const auto early = BeginCall(kSlotSetObjectParams, ok)) {
        return *early;
    }
    *ok = mode == kStandardMode && mModel.SetObjectParameters(ToObjectParameters(
                                       factorA, tempACelsius, factorB, tempBCelsius));
    return S_OK;
}

HRESULT CalibrationObject::CalTempToCounts(float tempCelsius, unsigned short* counts, BOOL* ok) {
    if (counts == nullptr) {
        return E_POINTER;
    }
    if (const auto early = BeginCall(kSlotTempToCounts, ok)) {
        return *early;
    }
    const auto conversion = mModel.Current();
    if (!conversion) {
        return S_OK;
    }
    if (const auto count = conversion->NearestCount(tempCelsius)) {
        *counts = *count;
        *ok = TRUE;
    }
    return S_OK;
}

HRESULT CalibrationObject::CalIsReady() {
    if (const auto early = InjectedFault(kSlotIsReady, nullptr)) {
        return *early;
    }
    return S_OK;
}

HRESULT CalibrationObject::CalLoadFactoryKind2(ULONG calKind, float c0, float c1, float c2,
                                               float c3, float c4, float c5, ULONG countsHigh,
                                               ULONG countsLow, float tempMaxK, float tempMinK,
                                               BOOL* ok) {
    if (const auto early = BeginCall(kSlotLoadFactoryKind2, ok)) {
        return *early;
    }
    // Other kinds need the extra coefficient, which only the general slot carries.
    *ok =
        calKind == 2 &&
        mModel.LoadFactory(ToFactoryCalibration(
            {calKind, {c0, c1, c2, c3, c4, c5}, 0.0f, countsLow, countsHigh, tempMinK, tempMaxK}));
    return S_OK;
}

HRESULT CalibrationObject::CalSetIntegrationTime(LONG integrationTime, BOOL* ok) {
    if (const auto early = BeginCall(kSlotSetIntegrationTime, ok)) {
        return *early;
    }
    *ok = mModel.SetIntegrationTime(integrationTime);
    return S_OK;
}

HRESULT CalibrationObject::CalLoadFactory(ULONG calKind, float c0, float c1, float c2, float c3,
                                          float c4, float c5, ULONG countsHigh, ULONG countsLow,
                                          float tempMaxK, float tempMinK, float coefExtra,
                                          BOOL* ok) {
    if (const auto early = BeginCall(kSlotLoadFactory, ok)) {
        return *early;
    }
    *ok = mModel.LoadFactory(ToFactoryCalibration(
        {calKind, {c0, c1, c2, c3, c4, c5}, coefExtra, countsLow, countsHigh, tempMinK, tempMaxK}));
    return S_OK;
}

HRESULT CalibrationObject::CalIntegrationTimeAt(float tempK, float count, float* result, LONG mode,
                                                BOOL* ok) {
    if (result == nullptr) {
        return E_POINTER;
    }
    if (const auto early = BeginCall(kSlotIntegrationTimeAt, ok)) {
        return *early;
    }
    if (mode != kStandardMode) {
        return S_OK;
    }
    const auto time = mModel.IntegrationTimeAt(tempK, count);
    if (!time || !std::isfinite(static_cast<float>(*time))) {
        return S_OK;
    }
    *result = static_cast<float>(*time);
    *ok = TRUE;
    return S_OK;
}

} // namespace camsim
