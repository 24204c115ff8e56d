// Where each pixel's preset comes from: one preset for the whole frame, a preset map, or pixel
// keys with a table from keys to presets.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include <ostrel_types.h>

#include "frame_files.h"

namespace convert {

struct UniformPreset {
    unsigned char preset = 0;
};

struct PresetMap {
    std::filesystem::path file;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<unsigned char> presets;
};

struct PixelKeys {
    std::filesystem::path file;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<unsigned long> keys; // unsigned long is what the engine takes
    std::vector<unsigned char> keyToPreset;
};

using PresetSource = std::variant<UniformPreset, PresetMap, PixelKeys>;

// An 8-bit PGM whose samples are presets 0..3. Errors name the file.
bool ReadPresetMap(const std::filesystem::path& file, PresetMap& map, std::string& error);
// An 8- or 16-bit PGM of keys and a text table of "key preset" lines ("#" starts a comment);
// every key the image uses must be in the table. Errors name the file.
bool ReadPixelKeys(const std::filesystem::path& keyImage, const std::filesystem::path& keyTable,
                   PixelKeys& keys, std::string& error);

// The presets the frame's pixels go through.
std::array<bool, vz::kPresetCount> PresetsUsed(const PresetSource& source);
// False, with a message naming both files, when a map or key image has another size.
bool MatchesFrame(const PresetSource& source, const formats::Frame& frame,
                  const std::filesystem::path& frameFile, std::string& error);

} // namespace convert
