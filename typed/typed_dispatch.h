// The three typed-buffer dispatchers: check both element-type codes (input first), then hand the
// call to the kernel of the pair. They validate nothing else and touch no engine state.
#pragma once

#include "kernel_tables.h"

namespace vz::typed {

// Every pixel looked up in the LUT of preset.
template <LutEngine E>
bool DispatchCountsToTemp(E& engine, unsigned char preset, STypedData in, STypedData out,
                          ApiUInt32 n, unsigned char* status, ETempType type) {
    if (in.eType >= kDataTypeCount || out.eType >= kDataTypeCount) {
        return false;
    }
    return kKernelTable<UniformFamily<E>>[in.eType][out.eType](engine, preset, in.pData, out.pData,
                                                               n, status, type);
}

// Pixel k looked up in the LUT of preset presetMap[k].
template <LutEngine E>
bool DispatchCountsToTemp(E& engine, STypedData in, const unsigned char* presetMap, STypedData out,
                          ApiUInt32 n, unsigned char* status, ETempType type) {
    if (in.eType >= kDataTypeCount || out.eType >= kDataTypeCount) {
        return false;
    }
    return kKernelTable<PerPixelFamily<E>>[in.eType][out.eType](engine, in.pData, presetMap,
                                                                out.pData, n, status, type);
}

// Pixel k looked up in the LUT of preset keyToPreset[pixelKeys[k]].
template <LutEngine E>
bool DispatchCountsToTemp(E& engine, STypedData in, const ApiUInt32* pixelKeys,
                          const unsigned char* keyToPreset, STypedData out, ApiUInt32 n,
                          unsigned char* status, ETempType type) {
    if (in.eType >= kDataTypeCount || out.eType >= kDataTypeCount) {
        return false;
    }
    return kKernelTable<KeyedFamily<E>>[in.eType][out.eType](
        engine, in.pData, pixelKeys, keyToPreset, out.pData, n, status, type);
}

} // namespace vz::typed
