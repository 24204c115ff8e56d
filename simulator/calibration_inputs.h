// What the calibration slots carry, as the radiometric model takes it. The calibration object
// and the scene synthesis both build their models through here, so a scene is made by exactly
// the model a host's calibration object holds.
#pragma once

#include <array>
#include <cstdint>

#include "radiometric_model.h"

namespace camsim {

// The arguments of CalLoadFactory (CalLoadFactoryKind2 carries no coefExtra: pass 0).
struct FactorySlotArguments {
    std::uint32_t kind;
    std::array<float, 6> coef;
    float coefExtra;
    std::uint32_t countsLow;
    std::uint32_t countsHigh;
    float tempMinK;
    float tempMaxK;
};

FactoryCalibration ToFactoryCalibration(const FactorySlotArguments& arguments);
// The arguments of CalSetObjectParams (mode 1).
ObjectParameters ToObjectParameters(float factorA, float tempACelsius, float factorB,
                                    float tempBCelsius);

} // namespace camsim
