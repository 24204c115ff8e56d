// A preset's status table seen as runs of equal bytes. A bounded table has at most five (below,
// outside, valid, outside, above), so the kernels can compute a pixel's status from its index in
// registers instead of loading it from a second table: four comparisons cost less than eight
// loads per group of lanes. The table is scanned at each call, so what the kernels store is
// always what the table holds at that moment.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vz::typed {

struct StatusRuns {
    static constexpr std::size_t kCount = 5;
    // Run r holds marks[r] from starts[r] up to the next run's start; starts[0] is 0. The runs a
    // table lacks start beyond every index, at kLutSize.
    std::int32_t starts[kCount];
    unsigned char marks[kCount];
};

// Calls converting at least this many pixels find the runs: below it the scan of the whole table
// would cost more than the loads it saves.
inline constexpr std::size_t kPixelsWorthRuns = 16384;

// The runs of the kLutSize bytes at status; false when they are more than StatusRuns::kCount.
bool FindStatusRuns(const unsigned char* status, StatusRuns& runs);

} // namespace vz::typed
