// The C records and codes and the C++ ones they mirror: the same fields at the same offsets,
// copied field by field, and the same values. Each field list is written once, here.
#pragma once

#include <ostrel_c.h>
#include <ostrel_types.h>
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

// The C codes are the C++ enumerations' values.
#define OSTREL_SAME_CODE(c, cpp)                                                                   \
    static_assert(static_cast<long long>(c) == static_cast<long long>(cpp));
OSTREL_SAME_CODE(OSTREL_INT8, vz::Int8)
OSTREL_SAME_CODE(OSTREL_UINT8, vz::UInt8)
OSTREL_SAME_CODE(OSTREL_INT16, vz::Int16)
OSTREL_SAME_CODE(OSTREL_UINT16, vz::UInt16)
OSTREL_SAME_CODE(OSTREL_INT32, vz::Int32)
OSTREL_SAME_CODE(OSTREL_UINT32, vz::UInt32)
OSTREL_SAME_CODE(OSTREL_INT64, vz::Int64)
OSTREL_SAME_CODE(OSTREL_UINT64, vz::UInt64)
OSTREL_SAME_CODE(OSTREL_FLOAT, vz::Float)
OSTREL_SAME_CODE(OSTREL_DOUBLE, vz::Double)
OSTREL_SAME_CODE(OSTREL_CELSIUS, vz::eCelsius)
OSTREL_SAME_CODE(OSTREL_FAHRENHEIT, vz::eFahrenheit)
OSTREL_SAME_CODE(OSTREL_KELVIN, vz::eKelvin)
OSTREL_SAME_CODE(OSTREL_RANKINE, vz::eRankine)
OSTREL_SAME_CODE(OSTREL_LUT_VALID, vz::eLUTValid)
OSTREL_SAME_CODE(OSTREL_LUT_OUTSIDE, vz::eLUTOutside)
OSTREL_SAME_CODE(OSTREL_LUT_BELOW, vz::eLUTBelow)
OSTREL_SAME_CODE(OSTREL_LUT_ABOVE, vz::eLUTAbove)
#undef OSTREL_SAME_CODE

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
