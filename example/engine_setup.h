// The calibration the engine converts with: a factory record per preset in use and the object
// parameters, read from files and the command line, then loaded into the engine.
#pragma once

#include <ostrel.h>

#include <array>
#include <filesystem>
#include <optional>
#include <string>

#include "options.h"

namespace convert {

using PresetFlags = std::array<bool, vz::kPresetCount>;

struct Calibration {
    std::array<std::optional<vz::reduce::CQuilloFactoryCalReduceObject>, vz::kPresetCount> records;
    std::array<std::filesystem::path, vz::kPresetCount> recordFiles;
    vz::reduce::CObjectParametersReduceObject objectParams;
    std::filesystem::path objectParamsFile;
    bool objectParamsOverridden = false;
};

// The record of every used preset (the one --factory-cal names, else the sample) and the
// object parameters with the options' overrides. Errors name the file.
bool ReadCalibration(const Options& options, const PresetFlags& used,
                     const std::filesystem::path& samples, Calibration& calibration,
                     std::string& error);

// Loads the calibration into the engine, whose tables then hold lutUnit. With per-pixel or
// keyed dispatch the used presets become the active ones.
bool LoadIntoEngine(vz::CBroadCal& engine, Calibration& calibration, vz::ETempType lutUnit,
                    Dispatch dispatch, PresetFlags used, std::string& error);

} // namespace convert
