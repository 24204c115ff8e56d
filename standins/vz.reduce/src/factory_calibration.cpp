#include <vz/reduce/factory_calibration.h>

namespace vz::reduce {

CQuilloFactoryCalReduceObject::CQuilloFactoryCalReduceObject()
    : recordVersion(0), cameraSerial(0), lensId(0), filterId(0), detectorWidth(0),
      detectorHeight(0), calibrationDay(0), housingTempK(0), ambientTempK(0), checksum(0),
      calKind(0), calCoef(), calCoefExtra(0), countsLow(0), countsHigh(0), tempMinK(0), tempMaxK(0),
      calAux(0), integrationTime(0), rangeIndex(0), emissivityRef(0), shutterTempK(0), flags(0) {}

CQuilloFactoryCalReduceObject::~CQuilloFactoryCalReduceObject() = default;

CQuilloFactoryCalReduceObject::CQuilloFactoryCalReduceObject(
    const CQuilloFactoryCalReduceObject& other) = default;

CQuilloFactoryCalReduceObject&
CQuilloFactoryCalReduceObject::operator=(const CQuilloFactoryCalReduceObject& other) = default;

} // namespace vz::reduce
