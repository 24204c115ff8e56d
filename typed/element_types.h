// The C++ element type behind each EDataType code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <tuple>

#include "ostrel_types.h"

namespace vz::typed {

inline constexpr ApiUInt32 kDataTypeCount = 10;

using ElementTypes =
    std::tuple<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t,
               std::int64_t, std::uint64_t, float, double>;

template <std::size_t Code> using ElementType = std::tuple_element_t<Code, ElementTypes>;

static_assert(std::tuple_size_v<ElementTypes> == kDataTypeCount);
static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == 4);
static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == 8);

} // namespace vz::typed
