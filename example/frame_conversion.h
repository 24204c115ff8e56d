// One frame through the engine, by the dispatcher the preset source calls for.
#pragma once

#include <ostrel.h>

#include <cstdint>
#include <vector>

#include "frame_files.h"
#include "pixel_presets.h"

namespace convert {

struct Temperatures {
    std::vector<float> values;
    std::vector<std::uint8_t> status; // one ELUTStatus byte per pixel
};

// False when the engine fails (its tables could not be brought up to date). The source must
// match the frame's size.
bool ConvertFrame(vz::CBroadCal& engine, const PresetSource& source, const formats::Frame& frame,
                  vz::ETempType unit, Temperatures& result);

} // namespace convert
