#include "record_model.h"

#include "calibration_inputs.h"

namespace camsim {
namespace {

// The engine sends the object parameters' kelvin as Celsius floats, subtracting in double.
float KelvinToCelsius(float kelvin) {
    return static_cast<float>(kelvin - kCelsiusOffset);
}

// The engine sends a ratio of 0 as 1.
float Ratio(float value) {
    return value == 0.0f ? 1.0f : value;
}

} // namespace

std::optional<RadiometricModel>
ModelFromRecords(const vz::reduce::CQuilloFactoryCalReduceObject& record,
                 const vz::reduce::CObjectParametersReduceObject& params) {
    const float* c = record.calCoef;
    // Kind 2 travels through CalLoadFactoryKind2, which has no extra coefficient.
    const float coefExtra = record.calKind == 2 ? 0.0f : record.calCoefExtra;
    RadiometricModel model;
    const bool loaded =
        model.LoadFactory(ToFactoryCalibration({record.calKind,
                                                {c[0], c[1], c[2], c[3], c[4], c[5]},
                                                coefExtra,
                                                record.countsLow,
                                                record.countsHigh,
                                                record.tempMinK,
                                                record.tempMaxK})) &&
        model.SetIntegrationTime(static_cast<std::int32_t>(record.integrationTime)) &&
        model.SetAux(record.calAux) &&
        model.SetObjectParameters(
            ToObjectParameters(Ratio(params.objFactorA), KelvinToCelsius(params.objTempA),
                               Ratio(params.objFactorB), KelvinToCelsius(params.objTempB)));
    if (!loaded) {
        return std::nullopt;
    }
    return model;
}

} // namespace camsim
