#pragma once

#include <vz/api.h>

#include <cstdint>

namespace vz {

class VZ_API CUInt32 {
public:
    // Defined in vz.dll, so callers read it at run time.
    static const std::uint32_t Max;
};

} // namespace vz
