// Files that say which preset each pixel goes through: a preset map, or an image of pixel keys
// with a table from keys to presets.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <ostrel_types.h>

#include "frame_files.h"

namespace formats {

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

// An 8-bit PGM whose samples are presets 0..3. Errors name the file.
bool ReadPresetMap(const std::filesystem::path& file, PresetMap& map, std::string& error);
// An 8- or 16-bit PGM of keys and a text table of "key preset" lines ("#" starts a comment);
// every key the image uses must be in the table. Errors name the file.
bool ReadPixelKeys(const std::filesystem::path& keyImage, const std::filesystem::path& keyTable,
                   PixelKeys& keys, std::string& error);

} // namespace formats
