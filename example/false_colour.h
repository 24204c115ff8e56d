// A frame's temperatures as a false-colour picture: the frame at the left, beside it a vertical
// colour bar labelled with the scale's ends.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <ostrel_types.h>

#include "options.h"

namespace convert {

struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> rgb; // 3 bytes per pixel, rows from the top
};

// The columns the colour bar and its labels take beside a frame of this height; the picture is
// the frame's height, or kMinPictureHeight rows if the frame has fewer.
std::uint32_t ColourBarPanelWidth(std::uint32_t frameHeight);
inline constexpr std::uint32_t kMinPictureHeight = 32;

// The requested range, else the span of the status-0 pixels (of all pixels when none is
// valid), widened when it is a single value.
TemperatureRange ColourScale(std::span<const float> temperatures,
                             std::span<const std::uint8_t> status,
                             const std::optional<TemperatureRange>& requested);

Picture FalseColourPicture(std::uint32_t width, std::uint32_t height,
                           std::span<const float> temperatures, TemperatureRange scale,
                           vz::ETempType unit);

} // namespace convert
