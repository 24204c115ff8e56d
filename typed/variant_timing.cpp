#include "variant_timing.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <vector>

#include "element_types.h"

namespace vz::typed {
namespace {

constexpr std::size_t kPixels = 32768;
constexpr int kRounds = 5;

// Counts as a detector gives them: a smooth ramp with noise, within a few thousand counts.
std::vector<std::uint16_t> TimingFrame() {
    std::vector<std::uint16_t> counts(kPixels);
    std::uint32_t noise = 12345;
    for (std::size_t k = 0; k < kPixels; ++k) {
        noise = noise * 1664525u + 1013904223u;
        counts[k] = static_cast<std::uint16_t>(8000 + k % 512 * 16 + (noise >> 24));
    }
    return counts;
}

} // namespace

const KernelVariant& FastestVariant(std::span<const KernelVariant* const> candidates) {
    if (candidates.size() == 1) {
        return *candidates.front();
    }
    const std::vector<std::uint16_t> counts = TimingFrame();
    const std::vector<float> values(kLutSize, 20.0f);
    const std::vector<unsigned char> status(kLutSize, 0);
    std::vector<float> out(kPixels);
    const FixedLut luts{{values.data(), status.data()}};
    const UnitConversion none{};
    using Clock = std::chrono::steady_clock;
    std::vector<Clock::duration> best(candidates.size(), Clock::duration::max());
    // Rounds interleave the candidates, so that a pause of the machine's spreads over all.
    for (int round = 0; round <= kRounds; ++round) {
        for (std::size_t c = 0; c < candidates.size(); ++c) {
            const LookUpKernel<FixedLut> kernel = (*candidates[c]->kernels->fixed)[UInt16][Float];
            const Clock::time_point start = Clock::now();
            kernel(luts, counts.data(), out.data(), kPixels, nullptr, none);
            const Clock::duration took = Clock::now() - start;
            if (round > 0) { // the first round warms caches and clocks up
                best[c] = std::min(best[c], took);
            }
        }
    }
    return *candidates[std::min_element(best.begin(), best.end()) - best.begin()];
}

} // namespace vz::typed
