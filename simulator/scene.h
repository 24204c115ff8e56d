// A synthetic thermal scene: a warm rounded object (about 36.5 to 39.5 degC) on a cooler
// background with a gradient (about 20.5 to 25.5 degC), plus deterministic noise, and its
// detector counts through a conversion's exact inverse.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "radiometric_model.h"

namespace camsim {

// width × height Celsius temperatures, row by row from the top. The same size always gives the
// same scene.
std::vector<float> SceneTemperatures(std::uint32_t width, std::uint32_t height);

// The nearest count of every temperature; empty when one has no count in 0..65535.
std::optional<std::vector<std::uint16_t>> SceneCounts(const Conversion& conversion,
                                                      std::span<const float> celsius);

} // namespace camsim
