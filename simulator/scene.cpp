#include "scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace camsim {
namespace {

constexpr double kNoiseSigmaC = 0.15;
constexpr std::uint64_t kNoiseSeed = 0x0517E1u;

// splitmix64: a fixed sequence on every platform, unlike the standard distributions.
class NoiseSource {
public:
    // Normally distributed, by Box-Muller.
    double Gaussian(double sigma) {
        const double u1 = Uniform(), u2 = Uniform();
        return sigma * std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * std::numbers::pi * u2);
    }

private:
    // In (0, 1], so the logarithm above stays finite.
    double Uniform() {
        std::uint64_t z = (mState += 0x9E3779B97F4A7C15u);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        z ^= z >> 31;
        return (static_cast<double>(z >> 11) + 1.0) / 9007199254740992.0;
    }

    std::uint64_t mState = kNoiseSeed;
};

double Smoothstep(double edge0, double edge1, double x) {
    const double t = std::clamp((x - edge0) / (edge1 - edge0), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

} // namespace

std::vector<float> SceneTemperatures(std::uint32_t width, std::uint32_t height) {
    std::vector<float> celsius(std::size_t{width} * height);
    NoiseSource noise;
    const double centreX = 0.58 * width, centreY = 0.47 * height;
    const double radius = 0.27 * std::min(width, height);
    // The object's rim blends into the background over about three pixels.
    const double rim = std::min(0.5, 1.5 / std::max(radius, 1.0));
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const double fx = (x + 0.5) / width, fy = (y + 0.5) / height;
            const double background = 20.5 + 4.2 * fx + 0.8 * fy;
            const double r = std::hypot(x + 0.5 - centreX, y + 0.5 - centreY) / radius;
            const double object = 39.5 - 3.0 * std::min(r * r, 1.0);
            const double inside = 1.0 - Smoothstep(1.0 - rim, 1.0 + rim, r);
            const double value = background + (object - background) * inside;
            celsius[std::size_t{y} * width + x] =
                static_cast<float>(value + noise.Gaussian(kNoiseSigmaC));
        }
    }
    return celsius;
}

std::optional<std::vector<std::uint16_t>> SceneCounts(const Conversion& conversion,
                                                      std::span<const float> celsius) {
    std::vector<std::uint16_t> counts(celsius.size());
    for (std::size_t i = 0; i < celsius.size(); ++i) {
        const auto count = conversion.NearestCount(celsius[i]);
        if (!count) {
            return std::nullopt;
        }
        counts[i] = *count;
    }
    return counts;
}

} // namespace camsim
