#include <vz/uint32.h>

namespace vz {

const std::uint32_t CUInt32::Max = 4294967295u;

} // namespace vz
