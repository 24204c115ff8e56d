// The typed-buffer dispatcher of every kernel family: checks both element-type codes (input
// first), refreshes the family's LUTs, then hands the pixels to the kernel of the pair in the
// process's kernel set. When the codes or the refresh fail nothing is written, even for n = 0.
#pragma once

#include "kernel_set.h"
#include "keyed_family.h"
#include "per_pixel_family.h"
#include "temp_units.h"
#include "uniform_family.h"

namespace vz::typed {

template <class Family>
bool DispatchCountsToTemp(const Family& family, STypedData in, STypedData out, ApiUInt32 n,
                          unsigned char* status, ETempType type) {
    if (in.eType >= kDataTypeCount || out.eType >= kDataTypeCount || !family.Refresh()) {
        return false;
    }
    const auto luts = family.Luts();
    const UnitConversion conversion = UnitConversionFor(family.engine.LutTempType(), type);
    TableFor(ChosenKernels(), luts)[in.eType][out.eType](luts, in.pData, out.pData, n, status,
                                                         conversion);
    return true;
}

} // namespace vz::typed
