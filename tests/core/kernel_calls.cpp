#include "kernel_calls.h"

#include "typed_dispatch.h"

namespace vz::testing {

bool Convert(MemoryEngine& engine, const Routing& routing, STypedData in, STypedData out,
             ApiUInt32 n, unsigned char* status, ETempType type) {
    using namespace typed;
    switch (routing.family) {
    case Family::Uniform:
        return DispatchCountsToTemp(UniformPreset<MemoryEngine>{engine, routing.preset}, in, out, n,
                                    status, type);
    case Family::PerPixel:
        return DispatchCountsToTemp(PresetMap<MemoryEngine>{engine, routing.presetMap.data()}, in,
                                    out, n, status, type);
    case Family::Keyed:
        return DispatchCountsToTemp(KeyedPresets<MemoryEngine>{engine, routing.pixelKeys.data(),
                                                               routing.keyToPreset.data()},
                                    in, out, n, status, type);
    }
    return false;
}

} // namespace vz::testing
