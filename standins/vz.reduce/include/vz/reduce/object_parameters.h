#pragma once

#include <vz/reduce/api.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vz::reduce {

// The measured object's surroundings, which the camera server folds into its temperatures.
// Every field is one 32-bit word; temperatures are in kelvin. The calibration engine
// (vz::CBroadCal::SetObjectParams, ostrel_engine_set_object_params) sends four fields to the
// server: objFactorA, objTempA, objFactorB and objTempB. It keeps the others but does not use them.
class VZ_REDUCE_API CObjectParametersReduceObject {
public:
    // Zeroes every field.
    CObjectParametersReduceObject();
    ~CObjectParametersReduceObject();
    CObjectParametersReduceObject(const CObjectParametersReduceObject& other);
    CObjectParametersReduceObject& operator=(const CObjectParametersReduceObject& other);

    std::uint32_t recordVersion;      // layout version of the record; not used by the engine
    float emissivity;                 // not used by the engine; the emissivity is objFactorA
    float distance;                   // lens to object, metres; not used by the engine
    float relativeHumidity;           // of the air, 0 to 1; not used by the engine
    float atmosphereTempK;            // not used by the engine; the air's temperature is objTempB
    float reflectedTempK;             // not used by the engine; reflected temperature: objTempA
    float windowTransmission;         // of a window in the path; not used by the engine
    float windowTempK;                // of that window; not used by the engine
    float windowReflection;           // of that window; not used by the engine
    float windowReflectedTempK;       // of what that window reflects; not used by the engine
    float atmosphereTransmission;     // not used by the engine; the transmission is objFactorB
    float objFactorA;                 // emissivity of the object's surface; 0 is sent as 1
    float opticsTransmission;         // of external optics; not used by the engine
    float objTempA;                   // reflected temperature, sent in Celsius (0 as -273.15)
    float objTempB;                   // air temperature on the path, sent in Celsius (0 as -273.15)
    float opticsTempK;                // of external optics; not used by the engine
    std::uint32_t estimateAtmosphere; // not used by the engine, which sends objFactorB as it is
    float objFactorB;                 // transmission of the air along the path; 0 is sent as 1
    float spanLowK;                   // lowest temperature of interest; not used by the engine
    float spanHighK;                  // highest temperature of interest; not used by the engine
};

static_assert(std::is_standard_layout_v<CObjectParametersReduceObject>);
static_assert(sizeof(CObjectParametersReduceObject) == 4 * 20);
static_assert(offsetof(CObjectParametersReduceObject, recordVersion) == 4 * 0);
static_assert(offsetof(CObjectParametersReduceObject, emissivity) == 4 * 1);
static_assert(offsetof(CObjectParametersReduceObject, distance) == 4 * 2);
static_assert(offsetof(CObjectParametersReduceObject, relativeHumidity) == 4 * 3);
static_assert(offsetof(CObjectParametersReduceObject, atmosphereTempK) == 4 * 4);
static_assert(offsetof(CObjectParametersReduceObject, reflectedTempK) == 4 * 5);
static_assert(offsetof(CObjectParametersReduceObject, windowTransmission) == 4 * 6);
static_assert(offsetof(CObjectParametersReduceObject, windowTempK) == 4 * 7);
static_assert(offsetof(CObjectParametersReduceObject, windowReflection) == 4 * 8);
static_assert(offsetof(CObjectParametersReduceObject, windowReflectedTempK) == 4 * 9);
static_assert(offsetof(CObjectParametersReduceObject, atmosphereTransmission) == 4 * 10);
static_assert(offsetof(CObjectParametersReduceObject, objFactorA) == 4 * 11);
static_assert(offsetof(CObjectParametersReduceObject, opticsTransmission) == 4 * 12);
static_assert(offsetof(CObjectParametersReduceObject, objTempA) == 4 * 13);
static_assert(offsetof(CObjectParametersReduceObject, objTempB) == 4 * 14);
static_assert(offsetof(CObjectParametersReduceObject, opticsTempK) == 4 * 15);
static_assert(offsetof(CObjectParametersReduceObject, estimateAtmosphere) == 4 * 16);
static_assert(offsetof(CObjectParametersReduceObject, objFactorB) == 4 * 17);
static_assert(offsetof(CObjectParametersReduceObject, spanLowK) == 4 * 18);
static_assert(offsetof(CObjectParametersReduceObject, spanHighK) == 4 * 19);

} // namespace vz::reduce
