#include "frame_conversion.h"

namespace convert {

bool ConvertFrame(vz::CBroadCal& engine, const PresetSource& source, const formats::Frame& frame,
                  vz::ETempType unit, Temperatures& result) {
    const auto n = static_cast<unsigned long>(frame.PixelCount());
    result.values.resize(n);
    result.status.resize(n);
    // The engine only reads its input, though the interface takes it as writable.
    const vz::STypedData in{const_cast<std::byte*>(frame.data.data()), frame.type};
    const vz::STypedData out{result.values.data(), vz::Float};
    unsigned char* status = result.status.data();
    if (const auto* uniform = std::get_if<UniformPreset>(&source)) {
        return engine.CountsToTemp(uniform->preset, in, out, n, status, unit);
    }
    if (const auto* map = std::get_if<PresetMap>(&source)) {
        return engine.CountsToTemp(in, map->presets.data(), out, n, status, unit);
    }
    const auto& keyed = std::get<PixelKeys>(source);
    return engine.CountsToTemp(in, keyed.keys.data(), keyed.keyToPreset.data(), out, n, status,
                               unit);
}

} // namespace convert
