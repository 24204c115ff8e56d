// Which kernel variant looks tables up fastest on this processor, by measuring them.
#pragma once

#include <span>

#include "kernel_set.h"

namespace vz::typed {

// Times each candidate's uniform-preset UInt16 -> Float kernel, the conversion of a camera's
// frames, on a small synthetic frame converted plain, with status bytes and into another unit
// (a few milliseconds in all), and returns the one with the least time for the three. The first
// candidate when there is only one. Candidates must not be empty.
const KernelVariant& FastestVariant(std::span<const KernelVariant* const> candidates);

} // namespace vz::typed
