// Value types shared by the host application and ostrel.dll: temperature units, element types of
// typed buffers, LUT status bytes. Portable: no Windows header needed.
#pragma once

#include <cstdint>

namespace vz {

// A 32-bit unsigned integer as the exported interface spells it. Windows headers declare element
// counts, type codes and pixel keys as unsigned long, which is 32 bits there but 64 bits on Linux.
#if defined(_WIN32)
using ApiUInt32 = unsigned long;
#else
using ApiUInt32 = std::uint32_t;
#endif
static_assert(sizeof(ApiUInt32) == 4);

// Temperature unit. Unscoped so that hosts may pass bare codes; any other code means "no
// conversion" wherever a unit is taken.
enum ETempType : std::int32_t { eCelsius = 0, eFahrenheit = 1, eKelvin = 2, eRankine = 3 };

// Element type of a typed buffer; the numbering is part of the exported interface.
enum EDataType : ApiUInt32 {
    Int8 = 0,
    UInt8 = 1,
    Int16 = 2,
    UInt16 = 3,
    Int32 = 4,
    UInt32 = 5,
    Int64 = 6,
    UInt64 = 7,
    Float = 8,
    Double = 9,
};

// An untyped view of a caller's buffer; the element count is passed separately.
struct STypedData {
    void* pData;
    ApiUInt32 eType; // an EDataType code; codes above 9 are refused
};

// Status of one LUT entry: exactly one of these per entry.
enum ELUTStatus : unsigned char {
    eLUTValid = 0,   // inside the calibrated range
    eLUTOutside = 1, // outside the calibrated range, within the tolerated margin
    eLUTBelow = 2,   // below the low margin; the entry holds the low limit
    eLUTAbove = 4,   // above the high margin; the entry holds the high limit
};

inline constexpr unsigned kPresetCount = 4;
inline constexpr std::uint32_t kLutSize = 65536;

} // namespace vz
