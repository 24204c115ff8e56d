#include <vz/reduce/object_parameters.h>

namespace vz::reduce {

CObjectParametersReduceObject::CObjectParametersReduceObject()
    : recordVersion(0), emissivity(0), distance(0), relativeHumidity(0), atmosphereTempK(0),
      reflectedTempK(0), windowTransmission(0), windowTempK(0), windowReflection(0),
      windowReflectedTempK(0), atmosphereTransmission(0), objFactorA(0), opticsTransmission(0),
      objTempA(0), objTempB(0), opticsTempK(0), estimateAtmosphere(0), objFactorB(0), spanLowK(0),
      spanHighK(0) {}

CObjectParametersReduceObject::~CObjectParametersReduceObject() = default;

CObjectParametersReduceObject::CObjectParametersReduceObject(
    const CObjectParametersReduceObject& other) = default;

CObjectParametersReduceObject&
CObjectParametersReduceObject::operator=(const CObjectParametersReduceObject& other) = default;

} // namespace vz::reduce
