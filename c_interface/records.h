// The C records and the C++ ones they mirror: the same fields at the same offsets, copied field
// by field. Each field list is written once, here.
#pragma once

#include <ostrel_c.h>
#include <vz/reduce/factory_calibration.h>
#include <vz/reduce/object_parameters.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

#define OSTREL_FACTORY_CAL_FIELDS(FIELD)                                                           \
    FIELD(recordVersion)                                                                           \
    FIELD(cameraSerial)                                                                            \
    FIELD(lensId)                                                                                  \
    FIELD(filterId)                                                                                \
    FIELD(detectorWidth)                                                                           \
    FIELD(detectorHeight)                                                                          \
    FIELD(calibrationDay)                                                                          \
    FIELD(housingTempK)                                                                            \
    FIELD(ambientTempK)                                                                            \
    FIELD(checksum)                                                                                \
    FIELD(calKind)                                                                                 \
    FIELD(calCoef)                                                                                 \
    FIELD(calCoefExtra)                                                                            \
    FIELD(countsLow)                                                                               \
    FIELD(countsHigh)                                                                              \
    FIELD(tempMinK)                                                                                \
    FIELD(tempMaxK)                                                                                \
    FIELD(calAux)                                                                                  \
    FIELD(integrationTime)                                                                         \
    FIELD(rangeIndex)                                                                              \
    FIELD(emissivityRef)                                                                           \
    FIELD(shutterTempK)                                                                            \
    FIELD(flags)

#define OSTREL_OBJECT_PARAMS_FIELDS(FIELD)                                                         \
    FIELD(recordVersion)                                                                           \
    FIELD(emissivity)                                                                              \
    FIELD(distance)                                                                                \
    FIELD(relativeHumidity)                                                                        \
    FIELD(atmosphereTempK)                                                                         \
    FIELD(reflectedTempK)                                                                          \
    FIELD(windowTransmission)                                                                      \
    FIELD(windowTempK)                                                                             \
    FIELD(windowReflection)                                                                        \
    FIELD(windowReflectedTempK)                                                                    \
    FIELD(atmosphereTransmission)                                                                  \
    FIELD(objFactorA)                                                                              \
    FIELD(opticsTransmission)                                                                      \
    FIELD(objTempA)                                                                                \
    FIELD(objTempB)                                                                                \
    FIELD(opticsTempK)                                                                             \
    FIELD(estimateAtmosphere)                                                                      \
    FIELD(objFactorB)                                                                              \
    FIELD(spanLowK)                                                                                \
    FIELD(spanHighK)

namespace c_interface {

using FactoryCal = vz::reduce::CQuilloFactoryCalReduceObject;
using ObjectParams = vz::reduce::CObjectParametersReduceObject;

#define OSTREL_SAME_FIELD(C, Cpp, field)                                                           \
    static_assert(offsetof(C, field) == offsetof(Cpp, field) &&                                    \
                  sizeof(C::field) == sizeof(Cpp::field));
#define OSTREL_SAME_CAL_FIELD(field) OSTREL_SAME_FIELD(ostrel_factory_cal, FactoryCal, field)
#define OSTREL_SAME_PARAMS_FIELD(field) OSTREL_SAME_FIELD(ostrel_object_params, ObjectParams, field)
OSTREL_FACTORY_CAL_FIELDS(OSTREL_SAME_CAL_FIELD)
OSTREL_OBJECT_PARAMS_FIELDS(OSTREL_SAME_PARAMS_FIELD)
static_assert(sizeof(ostrel_factory_cal) == sizeof(FactoryCal) && sizeof(FactoryCal) == 4 * 28);
static_assert(sizeof(ostrel_object_params) == sizeof(ObjectParams) &&
              sizeof(ObjectParams) == 4 * 20);

template <class T> void CopyField(const T& from, T& to) {
    to = from;
}
template <class T, std::size_t N> void CopyField(const T (&from)[N], T (&to)[N]) {
    std::copy(std::begin(from), std::end(from), std::begin(to));
}

template <class From, class To> void CopyFactoryCal(const From& from, To& to) {
#define OSTREL_COPY_FIELD(field) CopyField(from.field, to.field);
    OSTREL_FACTORY_CAL_FIELDS(OSTREL_COPY_FIELD)
#undef OSTREL_COPY_FIELD
}

template <class From, class To> void CopyObjectParams(const From& from, To& to) {
#define OSTREL_COPY_FIELD(field) CopyField(from.field, to.field);
    OSTREL_OBJECT_PARAMS_FIELDS(OSTREL_COPY_FIELD)
#undef OSTREL_COPY_FIELD
}

} // namespace c_interface
