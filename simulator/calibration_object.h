// The server's calibration object: one radiometric model per object, driven through the
// calibration slots, which fail as the process-wide fault table says.
#pragma once

#include <ostrel_server.h>

#include <optional>

#include "fault_table.h"
#include "radiometric_model.h"
#include "server_object.h"

namespace camsim {

class CalibrationObject final : public ServerObject<CalibrationObject, IOsCalibration> {
public:
    HRESULT STDMETHODCALLTYPE Reserved003() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved004() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved005() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved006() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved007() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CalSetAux(float calAux, BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalComputeLUT(ULONG entryCount, ULONG step, ULONG largestCount,
                                            BSTR countsBufferName, BSTR tempBufferName,
                                            BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalSetObjectParams(float factorA, float tempACelsius, float factorB,
                                                 float tempBCelsius, LONG mode, BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE Reserved011() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved012() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CalTempToCounts(float tempCelsius, unsigned short* counts,
                                              BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalIsReady() override;
    HRESULT STDMETHODCALLTYPE CalLoadFactoryKind2(ULONG calKind, float c0, float c1, float c2,
                                                  float c3, float c4, float c5, ULONG countsHigh,
                                                  ULONG countsLow, float tempMaxK, float tempMinK,
                                                  BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalSetIntegrationTime(LONG integrationTime, BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalLoadFactory(ULONG calKind, float c0, float c1, float c2, float c3,
                                             float c4, float c5, ULONG countsHigh, ULONG countsLow,
                                             float tempMaxK, float tempMinK, float coefExtra,
                                             BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalIntegrationTimeAt(float tempK, float count, float* result,
                                                   LONG mode, BOOL* ok) override;

private:
    // Checks and clears the success flag and applies an injected fault; a value means the
    // call ends with it.
    static std::optional<HRESULT> BeginCall(OsCalibrationSlot slot, BOOL* ok);

    RadiometricModel mModel;
};

} // namespace camsim
