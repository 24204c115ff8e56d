// What a batch came to: frames, time per frame, the temperatures of the valid pixels and how
// the pixels were marked.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <span>

#include <ostrel_types.h>

namespace convert {

class BatchSummary {
public:
    void Add(std::span<const float> temperatures, std::span<const std::uint8_t> status,
             double milliseconds);
    // Temperatures in `unit`, as converted.
    void Print(std::FILE* out, vz::ETempType unit) const;

private:
    std::size_t frames_ = 0;
    std::size_t pixels_ = 0;
    double milliseconds_ = 0.0;
    std::size_t validPixels_ = 0;
    double validSum_ = 0.0;
    float validMin_ = std::numeric_limits<float>::infinity();
    float validMax_ = -std::numeric_limits<float>::infinity();
    std::array<std::size_t, 256> byStatus_{};
};

} // namespace convert
