#include "boundary.h"
#include "engine_access.h"
#include "engine_handle.h"

using c_interface::EngineResult;
using c_interface::Guarded;
using c_interface::PresetRefusal;
using c_interface::ValidPreset;
using c_interface::ValidType;
using c_interface::ValidUnit;

namespace {

// What the three conversions check of their shared arguments, once per call.
bool ValidBuffers(const ostrel_engine* engine, const void* in, uint32_t inType, const void* out,
                  uint32_t outType, uint32_t n, uint32_t unit) {
    return engine != nullptr && in != nullptr && out != nullptr && ValidType(inType) &&
           ValidType(outType) && n != 0 && ValidUnit(unit);
}

// The engine takes its input through a writable pointer but only reads it.
vz::STypedData Input(const void* in, uint32_t type) {
    return {const_cast<void*>(in), type};
}

// Converts through the presets marked in `through`, refused while one of them is. Their tables
// are brought up to date in a server session; the look-up itself runs outside one, so that
// conversions on several threads never wait for each other.
template <class Convert>
ostrel_status ConvertThrough(const char* function, ostrel_engine& handle,
                             const bool (&through)[vz::kPresetCount], Convert convert) {
    return Guarded(function, [&]() -> ostrel_status {
        vz::CBroadCal& engine = handle.engine;
        bool current = true;
        for (unsigned char p = 0; p < vz::kPresetCount; ++p) {
            if (through[p]) {
                if (const ostrel_status refusal = PresetRefusal(handle, p)) {
                    return refusal;
                }
                current = current && vz::IsLutCurrent(engine, p);
            }
        }
        if (!current) {
            const c_interface::ServerSession session;
            if (session.Refusal() != OSTREL_OK) {
                return session.Refusal();
            }
            for (unsigned char p = 0; p < vz::kPresetCount; ++p) {
                if (through[p] && !engine.UpdateLUT(p)) {
                    return EngineResult(engine, false);
                }
            }
        }
        return EngineResult(engine, convert(engine));
    });
}

template <class Convert>
ostrel_status ConvertThroughPreset(const char* function, ostrel_engine& handle, uint32_t preset,
                                   Convert convert) {
    bool through[vz::kPresetCount] = {};
    through[preset] = true;
    return ConvertThrough(function, handle, through, convert);
}

// The per-pixel and keyed conversions bring the active presets up to date.
template <class Convert>
ostrel_status ConvertThroughActivePresets(const char* function, ostrel_engine& handle,
                                          Convert convert) {
    bool through[vz::kPresetCount];
    for (unsigned char p = 0; p < vz::kPresetCount; ++p) {
        through[p] = vz::IsPresetActive(handle.engine, p);
    }
    return ConvertThrough(function, handle, through, convert);
}

} // namespace

extern "C" ostrel_status ostrel_convert_uniform(ostrel_engine* engine, uint32_t preset,
                                                const void* in, uint32_t in_type, void* out,
                                                uint32_t out_type, uint32_t n, uint8_t* status,
                                                uint32_t unit) {
    if (!ValidBuffers(engine, in, in_type, out, out_type, n, unit) || !ValidPreset(preset)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return ConvertThroughPreset(__func__, *engine, preset, [&](vz::CBroadCal& calibration) {
        return calibration.CountsToTemp(static_cast<unsigned char>(preset), Input(in, in_type),
                                        {out, out_type}, n, status,
                                        static_cast<vz::ETempType>(unit));
    });
}

extern "C" ostrel_status ostrel_convert_mapped(ostrel_engine* engine, const uint8_t* preset_map,
                                               const void* in, uint32_t in_type, void* out,
                                               uint32_t out_type, uint32_t n, uint8_t* status,
                                               uint32_t unit) {
    if (!ValidBuffers(engine, in, in_type, out, out_type, n, unit) || preset_map == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return ConvertThroughActivePresets(__func__, *engine, [&](vz::CBroadCal& calibration) {
        return calibration.CountsToTemp(Input(in, in_type), preset_map, {out, out_type}, n, status,
                                        static_cast<vz::ETempType>(unit));
    });
}

extern "C" ostrel_status ostrel_convert_keyed(ostrel_engine* engine, const uint32_t* pixel_keys,
                                              const uint8_t* key_to_preset, const void* in,
                                              uint32_t in_type, void* out, uint32_t out_type,
                                              uint32_t n, uint8_t* status, uint32_t unit) {
    if (!ValidBuffers(engine, in, in_type, out, out_type, n, unit) || pixel_keys == nullptr ||
        key_to_preset == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    static_assert(sizeof(unsigned long) == sizeof(uint32_t), "keys are 32-bit on Windows");
    return ConvertThroughActivePresets(__func__, *engine, [&](vz::CBroadCal& calibration) {
        return calibration.CountsToTemp(
            Input(in, in_type), reinterpret_cast<const unsigned long*>(pixel_keys), key_to_preset,
            {out, out_type}, n, status, static_cast<vz::ETempType>(unit));
    });
}

extern "C" ostrel_status ostrel_counts_to_temp(ostrel_engine* engine, uint32_t preset,
                                               uint16_t counts, float* temp, uint8_t* status,
                                               uint32_t unit) {
    if (engine == nullptr || temp == nullptr || !ValidPreset(preset) || !ValidUnit(unit)) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return ConvertThroughPreset(__func__, *engine, preset, [&](vz::CBroadCal& calibration) {
        return calibration.CountsToTemp(static_cast<unsigned char>(preset), counts, temp, status,
                                        static_cast<vz::ETempType>(unit));
    });
}
