#include "batch_summary.h"

#include <algorithm>
#include <cstdio>

#include "names.h"

namespace convert {
namespace {

struct StatusName {
    vz::ELUTStatus status;
    const char* name;
};

constexpr std::array<StatusName, 4> kStatusNames{{{vz::eLUTValid, "valid"},
                                                  {vz::eLUTOutside, "outside"},
                                                  {vz::eLUTBelow, "below"},
                                                  {vz::eLUTAbove, "above"}}};

} // namespace

void BatchSummary::Add(std::span<const float> temperatures, std::span<const std::uint8_t> status,
                       double milliseconds) {
    ++mFrames;
    mPixels += temperatures.size();
    mMilliseconds += milliseconds;
    // Four lanes of running figures, combined in a fixed order at the end, so that one lane's
    // additions need not wait for another's and the loop vectorises.
    constexpr std::size_t kLanes = 4;
    std::array<double, kLanes> sums{};
    std::array<std::size_t, kLanes> valid{};
    std::array<float, kLanes> lows, highs;
    lows.fill(mValidMin);
    highs.fill(mValidMax);
    const auto take = [&](std::size_t lane, std::size_t i) {
        const bool isValid = status[i] == vz::eLUTValid;
        const float t = temperatures[i];
        sums[lane] += isValid ? double{t} : 0.0;
        valid[lane] += isValid;
        lows[lane] = isValid ? std::min(lows[lane], t) : lows[lane];
        highs[lane] = isValid ? std::max(highs[lane], t) : highs[lane];
    };
    const std::size_t n = temperatures.size();
    std::size_t i = 0;
    for (; n - i >= kLanes; i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            take(lane, i + lane);
        }
    }
    for (; i < n; ++i) {
        take(0, i);
    }
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        mValidPixels += valid[lane];
        mValidSum += sums[lane];
        mValidMin = std::min(mValidMin, lows[lane]);
        mValidMax = std::max(mValidMax, highs[lane]);
    }
    mByStatus[vz::eLUTValid] += valid[0] + valid[1] + valid[2] + valid[3];
    for (const std::uint8_t mark : status) {
        if (mark != vz::eLUTValid) {
            ++mByStatus[mark];
        }
    }
}

void BatchSummary::Add(const BatchSummary& other) {
    mFrames += other.mFrames;
    mPixels += other.mPixels;
    mMilliseconds += other.mMilliseconds;
    mValidPixels += other.mValidPixels;
    mValidSum += other.mValidSum;
    mValidMin = std::min(mValidMin, other.mValidMin);
    mValidMax = std::max(mValidMax, other.mValidMax);
    for (std::size_t i = 0; i < mByStatus.size(); ++i) {
        mByStatus[i] += other.mByStatus[i];
    }
}

void BatchSummary::Print(std::ostream& out, vz::ETempType unit) const {
    char line[256];
    std::snprintf(line, sizeof(line), "Converted %llu frame%s, %llu pixels, %.2f ms per frame.\n",
                  static_cast<unsigned long long>(mFrames), mFrames == 1 ? "" : "s",
                  static_cast<unsigned long long>(mPixels),
                  mFrames == 0 ? 0.0 : mMilliseconds / static_cast<double>(mFrames));
    out << line;
    if (mValidPixels == 0) {
        out << "No pixel has status 0 (valid): no temperatures to sum up.\n";
    } else {
        std::snprintf(line, sizeof(line),
                      "Temperature over status-0 pixels (%s): min %.3f, mean %.3f, max %.3f\n",
                      formats::UnitSymbol(unit), mValidMin,
                      mValidSum / static_cast<double>(mValidPixels), mValidMax);
        out << line;
    }
    out << "Pixels by status:";
    for (const StatusName& entry : kStatusNames) {
        const double share = mPixels == 0 ? 0.0
                                          : 100.0 * static_cast<double>(mByStatus[entry.status]) /
                                                static_cast<double>(mPixels);
        std::snprintf(line, sizeof(line), "%s %u %s %.2f%%",
                      entry.status == vz::eLUTValid ? "" : ",", unsigned{entry.status}, entry.name,
                      share);
        out << line;
    }
    out << '\n';
}

} // namespace convert
