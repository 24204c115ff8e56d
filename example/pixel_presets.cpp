#include "pixel_presets.h"

#include "display_name.h"

namespace convert {

std::array<bool, vz::kPresetCount> PresetsUsed(const PresetSource& source) {
    std::array<bool, vz::kPresetCount> used{};
    if (const auto* uniform = std::get_if<UniformPreset>(&source)) {
        used[uniform->preset] = true;
    } else if (const auto* map = std::get_if<PresetMap>(&source)) {
        for (const unsigned char preset : map->presets) {
            used[preset] = true;
        }
    } else {
        const auto& keyed = std::get<PixelKeys>(source);
        for (const unsigned long key : keyed.keys) {
            used[keyed.keyToPreset[key]] = true;
        }
    }
    return used;
}

bool MatchesFrame(const PresetSource& source, const formats::Frame& frame,
                  const std::filesystem::path& frameFile, std::string& error) {
    const auto check = [&](const std::filesystem::path& file, std::uint32_t width,
                           std::uint32_t height) {
        if (width == frame.width && height == frame.height) {
            return true;
        }
        error = formats::DisplayName(frameFile) + ": " + std::to_string(frame.width) + "x" +
                std::to_string(frame.height) + " pixels, but " + formats::DisplayName(file) +
                " has " + std::to_string(width) + "x" + std::to_string(height);
        return false;
    };
    if (const auto* map = std::get_if<PresetMap>(&source)) {
        return check(map->file, map->width, map->height);
    }
    if (const auto* keyed = std::get_if<PixelKeys>(&source)) {
        return check(keyed->file, keyed->width, keyed->height);
    }
    return true;
}

} // namespace convert
