// Conversion of temperatures between the four units.
#pragma once

#include "ostrel_types.h"

namespace vz {

// The conversion between two fixed units. Every formula is (x + offset) * factor + shift, or
// (x + offset) / factor + shift for the four that divide, in double precision with one rounding
// back to float, in exactly that order: real divisions by 1.8, never a multiplication by 5/9,
// never fused, so that every path of the library gives the same bits. The steps a formula lacks
// are filled with + -0.0 and * 1.0, which IEEE arithmetic performs exactly (for zeros of either
// sign, infinities and NaN too), so each result is that of the formula as written.
struct UnitConversion {
    enum Kind { kNone, kScale, kDivide };
    Kind kind = kNone; // kNone: the value stays untouched, not even rounded through double
    double offset = -0.0;
    double factor = 1.0;
    double shift = -0.0;

    float Scale(float value) const {
        return static_cast<float>((static_cast<double>(value) + offset) * factor + shift);
    }
    float Divide(float value) const {
        return static_cast<float>((static_cast<double>(value) + offset) / factor + shift);
    }
    float Apply(float value) const {
        switch (kind) {
        case kScale:
            return Scale(value);
        case kDivide:
            return Divide(value);
        case kNone:
            break;
        }
        return value;
    }
};

// The twelve formulas. Same units, or a code outside 0..3, convert nothing.
inline UnitConversion UnitConversionFor(ETempType from, ETempType to) {
    using C = UnitConversion;
    if (from == to || static_cast<unsigned>(from) > 3 || static_cast<unsigned>(to) > 3) {
        return {};
    }
    static constexpr UnitConversion cells[4][4] = {
        // from Celsius: x * 1.8 + 32, x + 273.15, (x + 273.15) * 1.8
        {{}, {C::kScale, -0.0, 1.8, 32.0}, {C::kScale, 273.15}, {C::kScale, 273.15, 1.8}},
        // from Fahrenheit: (x - 32) / 1.8, (x + 459.67) / 1.8, x + 459.67
        {{C::kDivide, -32.0, 1.8}, {}, {C::kDivide, 459.67, 1.8}, {C::kScale, 459.67}},
        // from Kelvin: x - 273.15, x * 1.8 - 459.67, x * 1.8
        {{C::kScale, -273.15}, {C::kScale, -0.0, 1.8, -459.67}, {}, {C::kScale, -0.0, 1.8}},
        // from Rankine: x / 1.8 - 273.15, x - 459.67, x / 1.8
        {{C::kDivide, -0.0, 1.8, -273.15}, {C::kScale, -459.67}, {C::kDivide, -0.0, 1.8}, {}},
    };
    return cells[from][to];
}

// Converts value in place from one unit to another.
inline void ConvertTemp(float& value, ETempType from, ETempType to) {
    value = UnitConversionFor(from, to).Apply(value);
}

} // namespace vz
