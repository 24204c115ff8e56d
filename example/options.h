// The command line of ostrel-convert.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <ostrel_types.h>

#include "frame_files.h"
#include "option_values.h"

namespace convert {

// How each pixel finds its preset.
enum class Dispatch { Uniform, PresetMap, Keyed };

struct Options {
    bool help = false;
    bool version = false;
    // Nothing on standard output and no progress bar, unless something fails.
    bool quiet = false;
    // Files, folders or wildcards, as given.
    std::vector<std::filesystem::path> inputs;
    // With --type, frames are raw data of this element type and the size below; otherwise PGM
    // images, of the size below if given.
    std::optional<vz::EDataType> type;
    std::optional<std::uint32_t> width;
    std::optional<std::uint32_t> height;

    Dispatch dispatch = Dispatch::Uniform;
    unsigned char preset = 0;
    std::filesystem::path presetMap;
    std::filesystem::path keys;
    std::filesystem::path keyTable;

    std::array<std::optional<std::filesystem::path>, vz::kPresetCount> factoryCal;
    std::optional<std::filesystem::path> objectParams;
    std::optional<float> emissivity;
    std::optional<float> transmission;
    std::optional<float> reflectedC;
    std::optional<float> atmosphereC;
    vz::ETempType lutUnit = vz::eCelsius;
    vz::ETempType unit = vz::eCelsius;

    std::optional<std::filesystem::path> outFolder;
    bool pfm = false;
    bool csv = false;
    bool status = false;
    bool png = false;
    std::optional<TemperatureRange> range;
    // Frames converted at once; 0 for as many as the machine has cores.
    unsigned jobs = 0;
};

// The arguments after the program's name. False with a message naming the option or value at
// fault. With no output chosen, the PNG is.
bool ParseOptions(std::span<const std::wstring> arguments, Options& options, std::string& error);

// Generated from the option table.
std::string Usage();

} // namespace convert
