#pragma once

#include <vz/reduce/api.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vz::reduce {

// A camera's factory calibration for one measurement range, as the camera server's
// calibration object loads it. Every field is one 32-bit word; temperatures are in kelvin. The
// calibration engine sends calKind, calCoef, calCoefExtra, the counts and temperature limits,
// calAux and integrationTime to the server, and bounds each table with the limits; it keeps the
// other fields but does not use them.
class VZ_REDUCE_API CQuilloFactoryCalReduceObject {
public:
    // Zeroes every field.
    CQuilloFactoryCalReduceObject();
    ~CQuilloFactoryCalReduceObject();
    CQuilloFactoryCalReduceObject(const CQuilloFactoryCalReduceObject& other);
    CQuilloFactoryCalReduceObject& operator=(const CQuilloFactoryCalReduceObject& other);

    std::uint32_t recordVersion;  // layout version of the record; not used
    std::uint32_t cameraSerial;   // serial number of the calibrated camera; not used
    std::uint32_t lensId;         // lens fitted during calibration; not used
    std::uint32_t filterId;       // spectral filter fitted during calibration; not used
    std::uint32_t detectorWidth;  // detector columns; not used
    std::uint32_t detectorHeight; // detector rows; not used
    std::uint32_t calibrationDay; // day of calibration, from 1 January 2000; not used
    float housingTempK;           // housing temperature during calibration; not used
    float ambientTempK;           // laboratory air temperature then; not used
    std::uint32_t checksum;       // sum of the words below, as stored; not checked
    std::uint32_t calKind;        // calibration model; 2 selects the second kind
    float calCoef[6];             // coefficients of the calibration model
    float calCoefExtra;           // additional coefficient; not sent for kind 2
    std::uint32_t countsLow;      // lowest detector count of the calibrated range
    std::uint32_t countsHigh;     // highest detector count of the calibrated range
    float tempMinK;               // lowest calibrated temperature
    float tempMaxK;               // highest calibrated temperature
    float calAux;                 // auxiliary model value
    float integrationTime;        // detector integration time, microseconds; sent truncated
    std::uint32_t rangeIndex;     // measurement range among the camera's ranges; not used
    float emissivityRef;          // emissivity of the reference black body; not used
    float shutterTempK;           // shutter temperature during calibration; not used
    std::uint32_t flags;          // bit 0: record verified by the camera; not used
};

static_assert(std::is_standard_layout_v<CQuilloFactoryCalReduceObject>);
static_assert(sizeof(CQuilloFactoryCalReduceObject) == 4 * 28);
static_assert(offsetof(CQuilloFactoryCalReduceObject, recordVersion) == 4 * 0);
static_assert(offsetof(CQuilloFactoryCalReduceObject, cameraSerial) == 4 * 1);
static_assert(offsetof(CQuilloFactoryCalReduceObject, lensId) == 4 * 2);
static_assert(offsetof(CQuilloFactoryCalReduceObject, filterId) == 4 * 3);
static_assert(offsetof(CQuilloFactoryCalReduceObject, detectorWidth) == 4 * 4);
static_assert(offsetof(CQuilloFactoryCalReduceObject, detectorHeight) == 4 * 5);
static_assert(offsetof(CQuilloFactoryCalReduceObject, calibrationDay) == 4 * 6);
static_assert(offsetof(CQuilloFactoryCalReduceObject, housingTempK) == 4 * 7);
static_assert(offsetof(CQuilloFactoryCalReduceObject, ambientTempK) == 4 * 8);
static_assert(offsetof(CQuilloFactoryCalReduceObject, checksum) == 4 * 9);
static_assert(offsetof(CQuilloFactoryCalReduceObject, calKind) == 4 * 10);
static_assert(offsetof(CQuilloFactoryCalReduceObject, calCoef) == 4 * 11);
static_assert(offsetof(CQuilloFactoryCalReduceObject, calCoefExtra) == 4 * 17);
static_assert(offsetof(CQuilloFactoryCalReduceObject, countsLow) == 4 * 18);
static_assert(offsetof(CQuilloFactoryCalReduceObject, countsHigh) == 4 * 19);
static_assert(offsetof(CQuilloFactoryCalReduceObject, tempMinK) == 4 * 20);
static_assert(offsetof(CQuilloFactoryCalReduceObject, tempMaxK) == 4 * 21);
static_assert(offsetof(CQuilloFactoryCalReduceObject, calAux) == 4 * 22);
static_assert(offsetof(CQuilloFactoryCalReduceObject, integrationTime) == 4 * 23);
static_assert(offsetof(CQuilloFactoryCalReduceObject, rangeIndex) == 4 * 24);
static_assert(offsetof(CQuilloFactoryCalReduceObject, emissivityRef) == 4 * 25);
static_assert(offsetof(CQuilloFactoryCalReduceObject, shutterTempK) == 4 * 26);
static_assert(offsetof(CQuilloFactoryCalReduceObject, flags) == 4 * 27);

} // namespace vz::reduce
