// The conversion between two fixed units, as data the kernels of every instruction set share, and
// its formula for one value.
#pragma once

#include "isa_namespace.h"

namespace vz {

// Every formula is (x + offset) * factor + shift, or (x + offset) / factor + shift for the four
// that divide, in double precision with one rounding back to float, in exactly that order: real
// divisions by 1.8, never a multiplication by 5/9, never fused, so that every path of the library
// gives the same bits. The steps a formula lacks are filled with + -0.0 and * 1.0, which IEEE
// arithmetic performs exactly (for zeros of either sign, infinities and NaN too), so each result
// is that of the formula as written.
struct UnitConversion {
    enum Kind { kNone, kScale, kDivide };
    Kind kind = kNone; // kNone: the value stays untouched, not even rounded through double
    double offset = -0.0;
    double factor = 1.0;
    double shift = -0.0;
};

} // namespace vz

OSTREL_ISA_BEGIN

template <UnitConversion::Kind kKind> float Converted(const UnitConversion& c, float value) {
    const double x = static_cast<double>(value) + c.offset;
    if constexpr (kKind == UnitConversion::kScale) {
        return static_cast<float>(x * c.factor + c.shift);
    } else {
        return static_cast<float>(x / c.factor + c.shift);
    }
}

inline float Converted(const UnitConversion& c, float value) {
    switch (c.kind) {
    case UnitConversion::kScale:
        return Converted<UnitConversion::kScale>(c, value);
    case UnitConversion::kDivide:
        return Converted<UnitConversion::kDivide>(c, value);
    case UnitConversion::kNone:
        break;
    }
    return value;
}

OSTREL_ISA_END
