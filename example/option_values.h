// The values ostrel-convert's options take, read from their text; nothing for a value refused.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace convert {

inline constexpr unsigned kMostJobs = 256;

struct TemperatureRange {
    float low;
    float high;
};

struct PresetFile {
    unsigned char preset;
    std::string file;
};

// A preset from 0 to 3.
std::optional<unsigned char> ParsePreset(std::string_view text);
// A frame side from 1 to 65535.
std::optional<std::uint32_t> ParseSide(std::string_view text);
// Above 0 and at most 1.
std::optional<float> ParseRatio(std::string_view text);
// Celsius above absolute zero.
std::optional<float> ParseCelsius(std::string_view text);
// MIN:MAX, MIN below MAX.
std::optional<TemperatureRange> ParseRange(std::string_view text);
// From 1 to kMostJobs.
std::optional<unsigned> ParseJobs(std::string_view text);
// P=FILE.
std::optional<PresetFile> ParsePresetFile(std::string_view text);

} // namespace convert
