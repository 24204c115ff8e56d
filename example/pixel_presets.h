// Where each pixel's preset comes from: one preset for the whole frame, a preset map, or pixel
// keys with a table from keys to presets.
#pragma once

#include <array>
#include <filesystem>
#include <variant>

#include <ostrel_types.h>

#include "frame_files.h"
#include "preset_files.h"

namespace convert {

struct UniformPreset {
    unsigned char preset = 0;
};

using formats::PixelKeys;
using formats::PresetMap;
using formats::ReadPixelKeys;
using formats::ReadPresetMap;

using PresetSource = std::variant<UniformPreset, PresetMap, PixelKeys>;

// The presets the frame's pixels go through.
std::array<bool, vz::kPresetCount> PresetsUsed(const PresetSource& source);
// False, with a message naming both files, when a map or key image has another size.
bool MatchesFrame(const PresetSource& source, const formats::Frame& frame,
                  const std::filesystem::path& frameFile, std::string& error);

} // namespace convert
