// The typed-buffer dispatcher of every kernel family: checks both element-type codes (input
// first), then hands the call to the family's kernel of the pair. It validates nothing else and
// touches no engine state.
#pragma once

#include "kernel_tables.h"
#include "keyed_family.h"
#include "per_pixel_family.h"
#include "uniform_family.h"

namespace vz::typed {

template <class Family>
bool DispatchCountsToTemp(const Family& family, STypedData in, STypedData out, ApiUInt32 n,
                          unsigned char* status, ETempType type) {
    if (in.eType >= kDataTypeCount || out.eType >= kDataTypeCount) {
        return false;
    }
    return kKernelTable<Family>[in.eType][out.eType](family, in.pData, out.pData, n, status, type);
}

} // namespace vz::typed
