#include <windows.h>

#include <filesystem>
#include <string>

#include "boundary.h"
#include "record_files.h"
#include "records.h"

using c_interface::EngineOf;
using c_interface::EngineResult;
using c_interface::Guarded;
using c_interface::ValidPreset;
using c_interface::ValidUnit;

namespace {

// A UTF-8 name as a path; empty when it is not UTF-8.
std::filesystem::path PathFromUtf8(const char* name) {
    const int length = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name, -1, nullptr, 0);
    if (length <= 1) {
        return {};
    }
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name, -1, wide.data(), length);
    wide.pop_back();
    return wide;
}

} // namespace

extern "C" ostrel_status ostrel_engine_create(ostrel_engine** engine) {
    if (engine == nullptr) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        *engine = reinterpret_cast<ostrel_engine*>(new vz::CBroadCal);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_destroy(ostrel_engine* engine) {
    return Guarded([&]() -> ostrel_status {
        delete EngineOf(engine);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                       const ostrel_factory_cal* record) {
    if (engine == nullptr || record == nullptr || !ValidPreset(preset)) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        c_interface::FactoryCal copy;
        c_interface::CopyFactoryCal(*record, copy);
        vz::CBroadCal& calibration = *EngineOf(engine);
        return EngineResult(calibration,
                            calibration.SetBroadCal(static_cast<unsigned char>(preset), &copy));
    });
}

extern "C" ostrel_status ostrel_engine_load_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                        const char* path) {
    if (engine == nullptr || path == nullptr || !ValidPreset(preset)) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        c_interface::FactoryCal record;
        std::string error;
        const std::filesystem::path file = PathFromUtf8(path);
        if (file.empty() || !formats::ReadFactoryCal(file, record, error)) {
            return OSTREL_BAD_FILE;
        }
        vz::CBroadCal& calibration = *EngineOf(engine);
        return EngineResult(calibration,
                            calibration.SetBroadCal(static_cast<unsigned char>(preset), &record));
    });
}

extern "C" ostrel_status ostrel_engine_get_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                       ostrel_factory_cal* record) {
    if (engine == nullptr || record == nullptr || !ValidPreset(preset)) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        c_interface::FactoryCal stored;
        EngineOf(engine)->GetBroadCal(static_cast<unsigned char>(preset), &stored);
        c_interface::CopyFactoryCal(stored, *record);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_object_params(ostrel_engine* engine,
                                                         const ostrel_object_params* params) {
    if (engine == nullptr || params == nullptr) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        c_interface::ObjectParams copy;
        c_interface::CopyObjectParams(*params, copy);
        vz::CBroadCal& calibration = *EngineOf(engine);
        return EngineResult(calibration, calibration.SetObjectParams(&copy));
    });
}

extern "C" ostrel_status ostrel_engine_load_object_params(ostrel_engine* engine, const char* path) {
    if (engine == nullptr || path == nullptr) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        c_interface::ObjectParams params;
        std::string error;
        const std::filesystem::path file = PathFromUtf8(path);
        if (file.empty() || !formats::ReadObjectParams(file, params, error)) {
            return OSTREL_BAD_FILE;
        }
        vz::CBroadCal& calibration = *EngineOf(engine);
        return EngineResult(calibration, calibration.SetObjectParams(&params));
    });
}

extern "C" ostrel_status ostrel_engine_get_object_params(ostrel_engine* engine,
                                                         ostrel_object_params* params) {
    if (engine == nullptr || params == nullptr) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        c_interface::ObjectParams stored;
        EngineOf(engine)->GetObjectParams(&stored);
        c_interface::CopyObjectParams(stored, *params);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_table_unit(ostrel_engine* engine, uint32_t unit) {
    if (engine == nullptr || !ValidUnit(unit)) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        EngineOf(engine)->setLUTTempType(static_cast<vz::ETempType>(unit));
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_get_table_unit(ostrel_engine* engine, uint32_t* unit) {
    if (engine == nullptr || unit == nullptr) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        *unit = static_cast<uint32_t>(EngineOf(engine)->lutTempType());
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_active_presets(ostrel_engine* engine,
                                                          const uint8_t active[4]) {
    if (engine == nullptr || active == nullptr) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        bool flags[vz::kPresetCount];
        for (unsigned preset = 0; preset < vz::kPresetCount; ++preset) {
            flags[preset] = active[preset] != 0;
        }
        EngineOf(engine)->SetActivePresets(flags);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_temp_to_counts(ostrel_engine* engine, uint32_t preset, float temp,
                                               uint32_t unit, uint16_t* counts) {
    if (engine == nullptr || counts == nullptr || !ValidPreset(preset) || !ValidUnit(unit)) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        vz::CBroadCal& calibration = *EngineOf(engine);
        unsigned short result = 0;
        const bool ok = calibration.TempToCounts(static_cast<unsigned char>(preset), temp, &result,
                                                 static_cast<vz::ETempType>(unit));
        if (ok) {
            *counts = result;
        }
        return EngineResult(calibration, ok);
    });
}

extern "C" ostrel_status ostrel_integration_time_range(ostrel_engine* engine, uint32_t preset,
                                                       uint32_t* min_time, uint32_t* max_time) {
    if (engine == nullptr || min_time == nullptr || max_time == nullptr || !ValidPreset(preset)) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        vz::CBroadCal& calibration = *EngineOf(engine);
        unsigned long low = 0, high = 0;
        const bool ok =
            calibration.GetIntegrationTimeRange(static_cast<unsigned char>(preset), low, high);
        if (ok) {
            *min_time = low;
            *max_time = high;
        }
        return EngineResult(calibration, ok);
    });
}

extern "C" ostrel_status ostrel_temp_range(ostrel_engine* engine, uint32_t preset,
                                           uint32_t integration_time, float* min_temp,
                                           float* max_temp) {
    if (engine == nullptr || min_temp == nullptr || max_temp == nullptr || !ValidPreset(preset)) {
        return OSTREL_BAD_ARGUMENT;
    }
    return Guarded([&]() -> ostrel_status {
        vz::CBroadCal& calibration = *EngineOf(engine);
        return EngineResult(calibration, calibration.GetTempRangeFromIntTime(
                                             static_cast<unsigned char>(preset), integration_time,
                                             *min_temp, *max_temp));
    });
}
