#pragma once

#include <vz/reduce/api.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vz::reduce {

// The measured object's surroundings, which the camera server folds into its temperatures.
// Every field is one 32-bit word; temperatures are in kelvin.
class VZ_REDUCE_API CObjectParametersReduceObject {
public:
    // Zeroes every field.
    CObjectParametersReduceObject();
    ~CObjectParametersReduceObject();
    CObjectParametersReduceObject(const CObjectParametersReduceObject& other);
    CObjectParametersReduceObject& operator=(const CObjectParametersReduceObject& other);

    std::uint32_t recordVersion;      // layout version of the record
    float emissivity;                 // emissivity of the object's surface
    float distance;                   // distance from the lens to the object, metres
    float relativeHumidity;           // relative humidity of the air, 0 to 1
    float atmosphereTempK;            // air temperature along the path
    float reflectedTempK;             // apparent temperature of what the object reflects
    float windowTransmission;         // transmission of a window in the path
    float windowTempK;                // temperature of that window
    float windowReflection;           // reflection of that window
    float windowReflectedTempK;       // apparent temperature of what the window reflects
    float atmosphereTransmission;     // transmission of the air, when not estimated
    float objFactorA;                 // first correction ratio; 0 means 1
    float opticsTransmission;         // transmission of external optics
    float objTempA;                   // first correction temperature
    float objTempB;                   // second correction temperature
    float opticsTempK;                // temperature of external optics
    std::uint32_t estimateAtmosphere; // non-zero: estimate the air's transmission from the path
    float objFactorB;                 // second correction ratio; 0 means 1
    float spanLowK;                   // lowest temperature of interest
    float spanHighK;                  // highest temperature of interest
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
