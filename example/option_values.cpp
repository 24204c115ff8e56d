#include "option_values.h"

#include <charconv>
#include <cmath>

#include <ostrel_types.h>

#include "frame_files.h"

namespace convert {
namespace {

template <class Number> std::optional<Number> ParseNumber(std::string_view text) {
    Number value{};
    const auto end = text.data() + text.size();
    const auto [rest, status] = std::from_chars(text.data(), end, value);
    return !text.empty() && status == std::errc() && rest == end ? std::optional(value)
                                                                 : std::nullopt;
}

template <class Number, class Fits>
std::optional<Number> ParseNumberThat(std::string_view text, Fits fits) {
    const auto number = ParseNumber<Number>(text);
    return number && fits(*number) ? number : std::nullopt;
}

} // namespace

std::optional<unsigned char> ParsePreset(std::string_view text) {
    const auto preset =
        ParseNumberThat<unsigned>(text, [](unsigned p) { return p < vz::kPresetCount; });
    return preset ? std::optional(static_cast<unsigned char>(*preset)) : std::nullopt;
}

std::optional<std::uint32_t> ParseSide(std::string_view text) {
    return formats::ParseSide(std::wstring(text.begin(), text.end()));
}

std::optional<float> ParseRatio(std::string_view text) {
    return ParseNumberThat<float>(text, [](float r) { return r > 0.0f && r <= 1.0f; });
}

std::optional<float> ParseCelsius(std::string_view text) {
    return ParseNumberThat<float>(text, [](float c) { return std::isfinite(c) && c > -273.15f; });
}

std::optional<TemperatureRange> ParseRange(std::string_view text) {
    // MIN may be negative: the first colon after its first character ends it.
    const auto colon = text.find(':', 1);
    const auto low = ParseNumber<float>(text.substr(0, colon));
    const auto high =
        colon == text.npos ? std::nullopt : ParseNumber<float>(text.substr(colon + 1));
    return low && high && std::isfinite(*low) && std::isfinite(*high) && *low < *high
               ? std::optional(TemperatureRange{*low, *high})
               : std::nullopt;
}

std::optional<unsigned> ParseJobs(std::string_view text) {
    return ParseNumberThat<unsigned>(text, [](unsigned j) { return j >= 1 && j <= kMostJobs; });
}

std::optional<PresetFile> ParsePresetFile(std::string_view text) {
    const auto equals = text.find('=');
    const auto preset = ParsePreset(text.substr(0, equals));
    if (!preset || equals == text.npos || equals + 1 == text.size()) {
        return std::nullopt;
    }
    return PresetFile{*preset, std::string(text.substr(equals + 1))};
}

} // namespace convert
