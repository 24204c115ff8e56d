// The model a calibration object holds once a host's calibration engine has loaded a factory
// record and object parameters into it.
#pragma once

#include <optional>

#include <vz/reduce/factory_calibration.h>
#include <vz/reduce/object_parameters.h>

#include "radiometric_model.h"

namespace camsim {

// Empty when the model refuses a value, as the calibration object would.
std::optional<RadiometricModel>
ModelFromRecords(const vz::reduce::CQuilloFactoryCalReduceObject& record,
                 const vz::reduce::CObjectParametersReduceObject& params);

} // namespace camsim
