#include "preset_files.h"

#include <cstring>
#include <fstream>
#include <sstream>

#include "display_name.h"

namespace formats {
namespace {

constexpr std::size_t kKeyCount = 65536;
constexpr unsigned char kNoPreset = 0xFF;

std::string At(std::size_t index, std::uint32_t width) {
    return std::to_string(index % width) + "," + std::to_string(index / width);
}

// key → preset, kNoPreset where the table has no line for the key.
bool ReadKeyTable(const std::filesystem::path& file, std::vector<unsigned char>& table,
                  std::string& error) {
    std::ifstream in(file);
    if (!in) {
        error = DisplayName(file) + ": can't be opened";
        return false;
    }
    table.assign(kKeyCount, kNoPreset);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string content = line.substr(0, line.find('#'));
        if (content.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        const std::string where = DisplayName(file) + ":" + std::to_string(number) + ": ";
        std::istringstream fields(content);
        long long key = 0, preset = 0;
        std::string rest;
        if (!(fields >> key >> preset) || (fields >> rest)) {
            error = where + "expected \"key preset\"";
            return false;
        }
        if (key < 0 || key >= static_cast<long long>(kKeyCount)) {
            error = where + "key " + std::to_string(key) + " is not from 0 to 65535";
            return false;
        }
        if (preset < 0 || preset >= vz::kPresetCount) {
            error = where + "preset " + std::to_string(preset) + " is not from 0 to 3";
            return false;
        }
        if (table[key] != kNoPreset) {
            error = where + "key " + std::to_string(key) + " is given twice";
            return false;
        }
        table[key] = static_cast<unsigned char>(preset);
    }
    return true;
}

} // namespace

bool ReadPresetMap(const std::filesystem::path& file, PresetMap& map, std::string& error) {
    Frame image;
    if (!ReadPgm(file, image, error)) {
        return false;
    }
    if (image.type != vz::UInt8) {
        error = DisplayName(file) + ": a preset map must be an 8-bit PGM";
        return false;
    }
    map.file = file;
    map.width = image.width;
    map.height = image.height;
    map.presets.resize(image.PixelCount());
    for (std::size_t i = 0; i < map.presets.size(); ++i) {
        map.presets[i] = static_cast<unsigned char>(image.data[i]);
        if (map.presets[i] >= vz::kPresetCount) {
            error = DisplayName(file) + ": pixel " + At(i, map.width) + " names preset " +
                    std::to_string(map.presets[i]) + "; presets are 0 to 3";
            return false;
        }
    }
    return true;
}

bool ReadPixelKeys(const std::filesystem::path& keyImage, const std::filesystem::path& keyTable,
                   PixelKeys& keys, std::string& error) {
    Frame image;
    if (!ReadPgm(keyImage, image, error) || !ReadKeyTable(keyTable, keys.keyToPreset, error)) {
        return false;
    }
    keys.file = keyImage;
    keys.width = image.width;
    keys.height = image.height;
    keys.keys.resize(image.PixelCount());
    for (std::size_t i = 0; i < keys.keys.size(); ++i) {
        std::uint16_t key = 0;
        if (image.type == vz::UInt8) {
            key = static_cast<std::uint8_t>(image.data[i]);
        } else {
            std::memcpy(&key, image.data.data() + 2 * i, sizeof(key));
        }
        if (keys.keyToPreset[key] == kNoPreset) {
            error = DisplayName(keyImage) + ": key " + std::to_string(key) + " at pixel " +
                    At(i, keys.width) + " is not in " + DisplayName(keyTable);
            return false;
        }
        keys.keys[i] = key;
    }
    return true;
}

} // namespace formats
