#include "lut_bounds.h"

#include <algorithm>

#include "temp_units.h"

namespace vz {
namespace {

// Indices are compared as signed 32-bit numbers, so that "none" (all bits set) acts as -1.
using Index = std::int32_t;
constexpr Index kLastEntry = static_cast<Index>(kLutSize - 1);

Index AsIndex(std::uint32_t value) {
    return static_cast<Index>(value);
}

struct Range {
    float low;
    float high;
};

// Lowest and highest value from countsLow up to, but not including, countsHigh.
Range ScanCalibratedRange(const float* lut, Index lo, Index hi) {
    const float seed = lut[std::clamp(lo, Index{0}, kLastEntry)];
    Range range{seed, seed};
    const Index end = std::min(hi, kLastEntry + 1);
    for (Index i = std::max(lo, Index{0}); i < end; ++i) {
        range.low = std::min(range.low, lut[i]);
        range.high = std::max(range.high, lut[i]);
    }
    return range;
}

// The tolerated margin: 5 % of the (signed) value, at least 5 degrees.
float Margin(float value) {
    return std::max(5.0f, value / 100.0f * 5.0f);
}

// Where one side of the table leaves the observed range (edge) and where it leaves the margin
// (saturation); either may stay "none".
struct Edges {
    std::uint32_t edge;
    std::uint32_t saturation;
};

Edges SearchDownward(const float* lut, Index mid, Index lo, float low, float lowLimit,
                     std::uint32_t none) {
    Edges found{none, none};
    for (Index i = std::min(mid, kLastEntry); i >= 0; --i) {
        if (found.edge == none && (i < lo || lut[i] < low)) {
            found.edge = static_cast<std::uint32_t>(i);
        } else if (lut[i] < lowLimit && found.saturation == none) {
            found.saturation = static_cast<std::uint32_t>(i);
        } else if (found.saturation != none && found.edge != none) {
            break;
        }
    }
    return found;
}

Edges SearchUpward(const float* lut, Index mid, Index hi, float high, float highLimit,
                   std::uint32_t none) {
    Edges found{none, none};
    for (Index i = mid; i <= kLastEntry; ++i) {
        if (found.edge == none && (i > hi || lut[i] > high)) {
            found.edge = static_cast<std::uint32_t>(i);
        } else if (lut[i] > highLimit && found.saturation == none) {
            found.saturation = static_cast<std::uint32_t>(i);
        } else if (found.saturation != none && found.edge != none) {
            break;
        }
    }
    return found;
}

// The high side wins over the low side, and a missing high edge or saturation (-1) puts every
// entry above it: these asymmetries are intended.
void Mark(float* lut, unsigned char* status, Edges lowSide, Edges highSide, float lowLimit,
          float highLimit) {
    const Index lowEdge = AsIndex(lowSide.edge);
    const Index lowSaturation = AsIndex(lowSide.saturation);
    const Index highEdge = AsIndex(highSide.edge);
    const Index highSaturation = AsIndex(highSide.saturation);
    for (Index i = 0; i <= kLastEntry; ++i) {
        unsigned char mark = eLUTValid;
        if (i >= highEdge) {
            if (i >= highSaturation) {
                mark = eLUTAbove;
                lut[i] = highLimit;
            } else {
                mark = eLUTOutside;
            }
        } else if (i <= lowEdge) {
            if (i <= lowSaturation) {
                mark = eLUTBelow;
                lut[i] = lowLimit;
            } else {
                mark = eLUTOutside;
            }
        }
        status[i] = mark;
    }
}

} // namespace

void BoundLut(float* lut, unsigned char* status, const LutLimits& limits, ETempType lutUnit,
              std::uint32_t none) {
    const Index lo = AsIndex(limits.countsLow);
    const Index hi = AsIndex(limits.countsHigh);

    Range range = ScanCalibratedRange(lut, lo, hi);
    range.low = std::min(std::max(range.low, limits.tempMinC), limits.tempMaxC);
    range.high = std::max(std::min(range.high, limits.tempMaxC), limits.tempMinC);
    const float lowLimit = range.low - Margin(range.low);
    const float highLimit = range.high + Margin(range.high);

    // The sum wraps as an unsigned 32-bit number; after the shift it is a non-negative index.
    const Index mid = AsIndex((limits.countsLow + limits.countsHigh) >> 1);
    const Edges lowSide = SearchDownward(lut, mid, lo, range.low, lowLimit, none);
    const Edges highSide = SearchUpward(lut, mid, hi, range.high, highLimit, none);
    Mark(lut, status, lowSide, highSide, lowLimit, highLimit);

    for (std::uint32_t i = 0; i < kLutSize; ++i) {
        ConvertTemp(lut[i], eCelsius, lutUnit);
    }
}

} // namespace vz
