// Conversion of one temperature between the four units.
#pragma once

#include "ostrel_types.h"

namespace vz {

// Converts value in place from one unit to another in double precision, one rounding back to
// float. The operations run in the written order (real divisions by 1.8, never a multiplication
// by 5/9, never fused) so that every path of the library gives the same bits. Same units, or a
// code outside 0..3, leave value exactly as it was.
inline void ConvertTemp(float& value, ETempType from, ETempType to) {
    if (from == to) {
        return;
    }
    const double x = value;
    double result;
    switch (from) {
    case eCelsius:
        switch (to) {
        case eFahrenheit:
            result = x * 1.8 + 32.0;
            break;
        case eKelvin:
            result = x + 273.15;
            break;
        case eRankine:
            result = (x + 273.15) * 1.8;
            break;
        default:
            return;
        }
        break;
    case eFahrenheit:
        switch (to) {
        case eCelsius:
            result = (x - 32.0) / 1.8;
            break;
        case eKelvin:
            result = (x + 459.67) / 1.8;
            break;
        case eRankine:
            result = x + 459.67;
            break;
        default:
            return;
        }
        break;
    case eKelvin:
        switch (to) {
        case eCelsius:
            result = x - 273.15;
            break;
        case eFahrenheit:
            result = x * 1.8 - 459.67;
            break;
        case eRankine:
            result = x * 1.8;
            break;
        default:
            return;
        }
        break;
    case eRankine:
        switch (to) {
        case eCelsius:
            result = x / 1.8 - 273.15;
            break;
        case eFahrenheit:
            result = x - 459.67;
            break;
        case eKelvin:
            result = x / 1.8;
            break;
        default:
            return;
        }
        break;
    default:
        return;
    }
    value = static_cast<float>(result);
}

// ConvertTemp with both units fixed, for loops that convert many values. Every cell of the table
// is (x + offset) * factor + shift, or (x + offset) / factor + shift for the four that divide; the
// steps a cell lacks are filled with + -0.0 and * 1.0, which IEEE arithmetic performs exactly (for
// zeros of either sign, infinities and NaN too), so each result equals ConvertTemp's bit for bit.
struct UnitConversion {
    enum Kind { kNone, kScale, kDivide };
    Kind kind = kNone; // kNone: the value stays untouched, as ConvertTemp leaves it
    double offset = -0.0;
    double factor = 1.0;
    double shift = -0.0;

    float Scale(float value) const {
        return static_cast<float>((static_cast<double>(value) + offset) * factor + shift);
    }
    float Divide(float value) const {
        return static_cast<float>((static_cast<double>(value) + offset) / factor + shift);
    }
};

inline UnitConversion UnitConversionFor(ETempType from, ETempType to) {
    using C = UnitConversion;
    if (from == to || static_cast<unsigned>(from) > 3 || static_cast<unsigned>(to) > 3) {
        return {};
    }
    static constexpr UnitConversion cells[4][4] = {
        {{}, {C::kScale, -0.0, 1.8, 32.0}, {C::kScale, 273.15}, {C::kScale, 273.15, 1.8}},
        {{C::kDivide, -32.0, 1.8}, {}, {C::kDivide, 459.67, 1.8}, {C::kScale, 459.67}},
        {{C::kScale, -273.15}, {C::kScale, -0.0, 1.8, -459.67}, {}, {C::kScale, -0.0, 1.8}},
        {{C::kDivide, -0.0, 1.8, -273.15}, {C::kScale, -459.67}, {C::kDivide, -0.0, 1.8}, {}},
    };
    return cells[from][to];
}

} // namespace vz
