// What a batch came to: frames, time per frame, the temperatures of the valid pixels and how
// the pixels were marked.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <ostream>
#include <span>

#include <ostrel_types.h>

namespace convert {

class BatchSummary {
public:
    void Add(std::span<const float> temperatures, std::span<const std::uint8_t> status,
             double milliseconds);
    // Adds what another summary came to, so that frames can be summed up apart and their
    // summaries added in input order: the figures are then the same however frames are shared
    // among threads.
    void Add(const BatchSummary& other);
    // Temperatures in `unit`, as converted.
    void Print(std::ostream& out, vz::ETempType unit) const;

private:
    std::size_t mFrames = 0;
    std::size_t mPixels = 0;
    double mMilliseconds = 0.0;
    std::size_t mValidPixels = 0;
    double mValidSum = 0.0;
    float mValidMin = std::numeric_limits<float>::infinity();
    float mValidMax = -std::numeric_limits<float>::infinity();
    std::array<std::size_t, 256> mByStatus{};
};

} // namespace convert
