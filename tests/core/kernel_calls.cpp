#include "kernel_calls.h"

#include "typed_dispatch.h"

namespace vz::testing {

bool Convert(MemoryEngine& engine, const Routing& routing, STypedData in, STypedData out,
             ApiUInt32 n, unsigned char* status, ETempType type) {
    switch (routing.family) {
    case Family::Uniform:
        return typed::DispatchCountsToTemp(engine, routing.preset, in, out, n, status, type);
    case Family::PerPixel:
        return typed::DispatchCountsToTemp(engine, in, routing.presetMap.data(), out, n, status,
                                           type);
    case Family::Keyed:
        return typed::DispatchCountsToTemp(engine, in, routing.pixelKeys.data(),
                                           routing.keyToPreset.data(), out, n, status, type);
    }
    return false;
}

} // namespace vz::testing
