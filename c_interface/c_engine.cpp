#include <windows.h>

#include <memory>
#include <string>

#include "boundary.h"
#include "engine_access.h"
#include "engine_handle.h"
#include "records.h"

using c_interface::EngineResult;
using c_interface::Guarded;
using c_interface::PresetRefusal;
using c_interface::ValidPreset;
using c_interface::ValidUnit;
using c_interface::WithServer;

namespace {

// A UTF-8 name in UTF-16; empty when it is not UTF-8.
std::wstring WideFromUtf8(const char* name) {
    const int length = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name, -1, nullptr, 0);
    if (length <= 1) {
        return {};
    }
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name, -1, wide.data(), length);
    wide.pop_back();
    return wide;
}

// Reads a record from a file named in UTF-8 with the C++ interface's reader, which notes why it
// can't.
template <class Record>
bool ReadRecordFile(const char* name, Record& record, bool (*read)(const wchar_t*, Record*)) {
    const std::wstring file = WideFromUtf8(name);
    if (file.empty()) {
        failure_note::Write("the file name is empty or not UTF-8");
        return false;
    }
    return read(file.c_str(), &record);
}

// Loads a record into the preset. The preset's new object gets the object parameters the host
// set, as every other object holds them; until a load succeeds in full, the preset is refused.
ostrel_status LoadPreset(ostrel_engine& handle, std::uint32_t preset,
                         c_interface::FactoryCal& record) {
    vz::CBroadCal& engine = handle.engine;
    const auto p = static_cast<unsigned char>(preset);
    bool loaded = engine.SetBroadCal(p, &record);
    if (loaded && handle.paramsSet && !handle.paramsLost) {
        c_interface::ObjectParams params;
        engine.GetObjectParams(&params);
        loaded = engine.SetObjectParams(&params);
    }
    const ostrel_status status = EngineResult(engine, loaded);
    // An engine that never reached its calibration service has touched no object.
    handle.presetLost[p] = status != OSTREL_OK && status != OSTREL_NOT_READY;
    return status;
}

// Sends object parameters to every preset's object; until a set succeeds in full, every preset
// is refused.
ostrel_status SendObjectParams(ostrel_engine& handle, c_interface::ObjectParams& params) {
    const ostrel_status status =
        EngineResult(handle.engine, handle.engine.SetObjectParams(&params));
    handle.paramsSet = handle.paramsSet || status == OSTREL_OK;
    handle.paramsLost = status != OSTREL_OK && status != OSTREL_NOT_READY;
    return status;
}

} // namespace

extern "C" ostrel_status ostrel_engine_create(ostrel_engine** engine) {
    if (engine == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return Guarded(__func__, [&]() -> ostrel_status {
        auto created = std::make_unique<ostrel_engine>();
        bool allActive[vz::kPresetCount] = {true, true, true, true};
        created->engine.SetActivePresets(allActive);
        *engine = created.release();
        return OSTREL_OK;
    });
}

// Destroying drops the engine's server objects, so it runs in a session even on a thread that
// could not reach the server: the engine goes all the same.
extern "C" ostrel_status ostrel_engine_destroy(ostrel_engine* engine) {
    return Guarded(__func__, [&]() -> ostrel_status {
        const c_interface::ServerSession session;
        delete engine;
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                       const ostrel_factory_cal* record) {
    if (engine == nullptr || record == nullptr || !ValidPreset(preset)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return WithServer(__func__, [&]() -> ostrel_status {
        c_interface::FactoryCal copy;
        c_interface::CopyFactoryCal(*record, copy);
        return LoadPreset(*engine, preset, copy);
    });
}

extern "C" ostrel_status ostrel_engine_load_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                        const char* path) {
    if (engine == nullptr || path == nullptr || !ValidPreset(preset)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return WithServer(__func__, [&]() -> ostrel_status {
        c_interface::FactoryCal record;
        if (!ReadRecordFile(path, record, vz::ReadFactoryCalFile)) {
            return OSTREL_BAD_FILE;
        }
        return LoadPreset(*engine, preset, record);
    });
}

extern "C" ostrel_status ostrel_engine_get_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                       ostrel_factory_cal* record) {
    if (engine == nullptr || record == nullptr || !ValidPreset(preset)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return Guarded(__func__, [&]() -> ostrel_status {
        c_interface::FactoryCal stored;
        engine->engine.GetBroadCal(static_cast<unsigned char>(preset), &stored);
        c_interface::CopyFactoryCal(stored, *record);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_object_params(ostrel_engine* engine,
                                                         const ostrel_object_params* params) {
    if (engine == nullptr || params == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return WithServer(__func__, [&]() -> ostrel_status {
        c_interface::ObjectParams copy;
        c_interface::CopyObjectParams(*params, copy);
        return SendObjectParams(*engine, copy);
    });
}

extern "C" ostrel_status ostrel_engine_load_object_params(ostrel_engine* engine, const char* path) {
    if (engine == nullptr || path == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return WithServer(__func__, [&]() -> ostrel_status {
        c_interface::ObjectParams params;
        if (!ReadRecordFile(path, params, vz::ReadObjectParamsFile)) {
            return OSTREL_BAD_FILE;
        }
        return SendObjectParams(*engine, params);
    });
}

extern "C" ostrel_status ostrel_engine_get_object_params(ostrel_engine* engine,
                                                         ostrel_object_params* params) {
    if (engine == nullptr || params == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return Guarded(__func__, [&]() -> ostrel_status {
        c_interface::ObjectParams stored;
        engine->engine.GetObjectParams(&stored);
        c_interface::CopyObjectParams(stored, *params);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_table_unit(ostrel_engine* engine, uint32_t unit) {
    if (engine == nullptr || !ValidUnit(unit)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return Guarded(__func__, [&]() -> ostrel_status {
        engine->engine.setLUTTempType(static_cast<vz::ETempType>(unit));
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_get_table_unit(ostrel_engine* engine, uint32_t* unit) {
    if (engine == nullptr || unit == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return Guarded(__func__, [&]() -> ostrel_status {
        *unit = static_cast<uint32_t>(engine->engine.lutTempType());
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_engine_set_active_presets(ostrel_engine* engine,
                                                          const uint8_t active[4]) {
    if (engine == nullptr || active == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return Guarded(__func__, [&]() -> ostrel_status {
        bool flags[vz::kPresetCount];
        for (unsigned preset = 0; preset < vz::kPresetCount; ++preset) {
            flags[preset] = active[preset] != 0;
        }
        engine->engine.SetActivePresets(flags);
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_temp_to_counts(ostrel_engine* engine, uint32_t preset, float temp,
                                               uint32_t unit, uint16_t* counts) {
    if (engine == nullptr || counts == nullptr || !ValidPreset(preset) || !ValidUnit(unit)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return WithServer(__func__, [&]() -> ostrel_status {
        if (const ostrel_status refusal = PresetRefusal(*engine, preset)) {
            return refusal;
        }
        vz::CBroadCal& calibration = engine->engine;
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
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return WithServer(__func__, [&]() -> ostrel_status {
        if (const ostrel_status refusal = PresetRefusal(*engine, preset)) {
            return refusal;
        }
        vz::CBroadCal& calibration = engine->engine;
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

// A query: the preset converts afterwards as it did before.
extern "C" ostrel_status ostrel_temp_range(ostrel_engine* engine, uint32_t preset,
                                           uint32_t integration_time, float* min_temp,
                                           float* max_temp) {
    if (engine == nullptr || min_temp == nullptr || max_temp == nullptr || !ValidPreset(preset)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return WithServer(__func__, [&]() -> ostrel_status {
        if (const ostrel_status refusal = PresetRefusal(*engine, preset)) {
            return refusal;
        }
        bool restored = true;
        const bool ok =
            vz::TempRangeRestoringPreset(engine->engine, static_cast<unsigned char>(preset),
                                         integration_time, *min_temp, *max_temp, restored);
        engine->presetLost[preset] = !restored;
        return EngineResult(engine->engine, ok);
    });
}
