#include "calibration_inputs.h"

namespace camsim {

FactoryCalibration ToFactoryCalibration(const FactorySlotArguments& arguments) {
    FactoryCalibration calibration;
    calibration.kind = arguments.kind;
    for (std::size_t i = 0; i < arguments.coef.size(); ++i) {
        calibration.coef[i] = arguments.coef[i];
    }
    calibration.coefExtra = arguments.coefExtra;
    calibration.countsLow = arguments.countsLow;
    calibration.countsHigh = arguments.countsHigh;
    calibration.tempMinK = arguments.tempMinK;
    calibration.tempMaxK = arguments.tempMaxK;
    return calibration;
}

ObjectParameters ToObjectParameters(float factorA, float tempACelsius, float factorB,
                                    float tempBCelsius) {
    return {factorA, tempACelsius, factorB, tempBCelsius};
}

} // namespace camsim
