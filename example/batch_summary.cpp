#include "batch_summary.h"

#include <algorithm>

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
    ++frames_;
    pixels_ += temperatures.size();
    milliseconds_ += milliseconds;
    for (std::size_t i = 0; i < temperatures.size(); ++i) {
        ++byStatus_[status[i]];
        if (status[i] == vz::eLUTValid) {
            ++validPixels_;
            validSum_ += temperatures[i];
            validMin_ = std::min(validMin_, temperatures[i]);
            validMax_ = std::max(validMax_, temperatures[i]);
        }
    }
}

void BatchSummary::Print(std::FILE* out, vz::ETempType unit) const {
    std::fprintf(out, "Converted %llu frame%s, %llu pixels, %.2f ms per frame.\n",
                 static_cast<unsigned long long>(frames_), frames_ == 1 ? "" : "s",
                 static_cast<unsigned long long>(pixels_),
                 frames_ == 0 ? 0.0 : milliseconds_ / static_cast<double>(frames_));
    if (validPixels_ == 0) {
        std::fputs("No pixel has status 0 (valid): no temperatures to sum up.\n", out);
    } else {
        std::fprintf(out, "Temperature over status-0 pixels (%s): min %.3f, mean %.3f, max %.3f\n",
                     formats::UnitSymbol(unit), validMin_,
                     validSum_ / static_cast<double>(validPixels_), validMax_);
    }
    std::fputs("Pixels by status:", out);
    for (const StatusName& entry : kStatusNames) {
        const double share = pixels_ == 0 ? 0.0
                                          : 100.0 * static_cast<double>(byStatus_[entry.status]) /
                                                static_cast<double>(pixels_);
        std::fprintf(out, "%s %u %s %.2f%%", entry.status == vz::eLUTValid ? "" : ",",
                     unsigned{entry.status}, entry.name, share);
    }
    std::fputs("\n", out);
}

} // namespace convert
