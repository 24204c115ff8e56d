// The batch summary: frames summed up apart and added together come to the figures of all
// their pixels.
#include <sstream>

#include <gtest/gtest.h>

#include "batch_summary.h"

namespace {

TEST(BatchSummary, AddsFramesSummedUpApart) {
    convert::BatchSummary first, second, batch;
    first.Add(std::vector<float>{1.0f, 2.0f, 99.0f, 4.0f, 5.0f},
              std::vector<std::uint8_t>{0, 0, 2, 0, 0}, 3.0);
    second.Add(std::vector<float>{3.0f, 6.0f}, std::vector<std::uint8_t>{0, 1}, 5.0);
    batch.Add(first);
    batch.Add(second);
    std::ostringstream out;
    batch.Print(out, vz::eCelsius);
    EXPECT_EQ(out.str(), "Converted 2 frames, 7 pixels, 4.00 ms per frame.\n"
                         "Temperature over status-0 pixels (C): min 1.000, mean 3.000, max 5.000\n"
                         "Pixels by status: 0 valid 71.43%, 1 outside 14.29%, 2 below 14.29%, "
                         "4 above 0.00%\n");
}

} // namespace
