// Conversion of temperatures between the four units.
#pragma once

#include "ostrel_types.h"
#include "unit_formulas.h"

namespace vz {

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
    value = typed::Converted(UnitConversionFor(from, to), value);
}

} // namespace vz
