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
    for (std::size_t i = 0; i < temperatures.size(); ++i) {
        ++mByStatus[status[i]];
        if (status[i] == vz::eLUTValid) {
            ++mValidPixels;
            mValidSum += temperatures[i];
            mValidMin = std::min(mValidMin, temperatures[i]);
            mValidMax = std::max(mValidMax, temperatures[i]);
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
