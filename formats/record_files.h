// Reads factory calibrations and object parameters from "name = value" text files: one field of
// the record per line, "#" starting a comment, temperatures in kelvin as the records hold them.
#pragma once

#include <filesystem>
#include <string>

#include <vz/reduce/factory_calibration.h>
#include <vz/reduce/object_parameters.h>

namespace formats {

// Fills record from the file. Fields the file does not name keep their value. False with a
// message naming the file (and line) when the file can't be read, a name is unknown, a value is
// not a number of the field's kind, or a field is given twice.
bool ReadFactoryCal(const std::filesystem::path& file,
                    vz::reduce::CQuilloFactoryCalReduceObject& record, std::string& error);
bool ReadObjectParams(const std::filesystem::path& file,
                      vz::reduce::CObjectParametersReduceObject& record, std::string& error);

// The folder of the sample records (factory_cal.txt, object_params.txt): "samples" beside the
// running program in the build tree, share/ostrel/samples in the SDK.
std::filesystem::path SamplesFolder();

} // namespace formats
