#include "engine_setup.h"

#include "display_name.h"

namespace convert {
namespace {

constexpr double kKelvinOffset = 273.15;

float CelsiusToKelvin(float celsius) {
    return static_cast<float>(celsius + kKelvinOffset);
}

} // namespace

bool ReadCalibration(const Options& options, const PresetFlags& used,
                     const std::filesystem::path& samples, Calibration& calibration,
                     std::string& error) {
    for (unsigned preset = 0; preset < vz::kPresetCount; ++preset) {
        if (!used[preset]) {
            continue;
        }
        const std::filesystem::path file =
            options.factoryCal[preset].value_or(samples / "factory_cal.txt");
        if (!vz::ReadFactoryCalFile(file.c_str(), &calibration.records[preset].emplace())) {
            error = GetOstrelFailure();
            return false;
        }
        calibration.recordFiles[preset] = file;
    }
    calibration.objectParamsFile = options.objectParams.value_or(samples / "object_params.txt");
    vz::reduce::CObjectParametersReduceObject& params = calibration.objectParams;
    if (!vz::ReadObjectParamsFile(calibration.objectParamsFile.c_str(), &params)) {
        error = GetOstrelFailure();
        return false;
    }
    params.objFactorA = options.emissivity.value_or(params.objFactorA);
    params.objFactorB = options.transmission.value_or(params.objFactorB);
    if (options.reflectedC) {
        params.objTempA = CelsiusToKelvin(*options.reflectedC);
    }
    if (options.atmosphereC) {
        params.objTempB = CelsiusToKelvin(*options.atmosphereC);
    }
    calibration.objectParamsOverridden =
        options.emissivity || options.transmission || options.reflectedC || options.atmosphereC;
    return true;
}

bool LoadIntoEngine(vz::CBroadCal& engine, Calibration& calibration, vz::ETempType lutUnit,
                    Dispatch dispatch, PresetFlags used, std::string& error) {
    if (!engine.isAvailable()) {
        error = "the camera server's calibration service is not available";
        return false;
    }
    engine.setLUTTempType(lutUnit);
    for (unsigned preset = 0; preset < vz::kPresetCount; ++preset) {
        auto& record = calibration.records[preset];
        if (record && !engine.SetBroadCal(static_cast<unsigned char>(preset), &*record)) {
            error = formats::DisplayName(calibration.recordFiles[preset]) +
                    ": the camera server refused this factory calibration for preset " +
                    std::to_string(preset);
            return false;
        }
    }
    // After the records: each record gets a new server object, which needs the parameters.
    if (!engine.SetObjectParams(&calibration.objectParams)) {
        error = formats::DisplayName(calibration.objectParamsFile) +
                ": the camera server refused these object parameters" +
                (calibration.objectParamsOverridden ? " as the options changed them" : "");
        return false;
    }
    if (dispatch != Dispatch::Uniform && !engine.SetActivePresets(used.data())) {
        error = "the engine refused the active presets";
        return false;
    }
    return true;
}

} // namespace convert
