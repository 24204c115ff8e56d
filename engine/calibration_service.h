// The engine's calls on a preset's server calibration object. Each fills an empty handle with a
// new object first, and succeeds when the HRESULT is not negative and, where the method has one,
// its success flag is not zero. A handle that still holds no object fails the call.
#pragma once

#include <ostrel.h>

namespace vz::service {

bool IsReady(COstrelCal& cal);
// CalLoadFactoryKind2 for calKind 2, CalLoadFactory for any other kind.
bool LoadFactory(COstrelCal& cal, const reduce::CQuilloFactoryCalReduceObject& record);
// integrationTime truncated toward zero.
bool SetIntegrationTime(COstrelCal& cal, float integrationTime);
bool SetAux(COstrelCal& cal, float aux);
// The two ratios (0 sent as 1) and the two temperatures (sent in Celsius).
bool SetObjectParams(COstrelCal& cal, const reduce::CObjectParametersReduceObject& params);
// Fills the temperature buffer named tempBuffer from the counts buffer named countsBuffer.
bool ComputeLut(COstrelCal& cal, BSTR countsBuffer, BSTR tempBuffer);
bool TempToCounts(COstrelCal& cal, float tempCelsius, unsigned short* counts);
bool IntegrationTimeAt(COstrelCal& cal, float tempK, float count, float* result);

} // namespace vz::service
