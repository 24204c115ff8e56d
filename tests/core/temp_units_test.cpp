#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "reference_rules.h"
#include "temp_units.h"

namespace vz::testing {
namespace {

float Converted(float value, int from, int to) {
    ConvertTemp(value, static_cast<ETempType>(from), static_cast<ETempType>(to));
    return value;
}

// Against unfused double arithmetic, for every pair of codes (7 and -1 included) and
// float bit patterns spread over the whole range: zeros of both signs, subnormals, infinities,
// quiet and signalling NaN.
TEST(ConvertTemp, EveryCellMatchesUnfusedDoubleArithmetic) {
    std::vector<std::uint32_t> patterns = {0x00000000u, 0x80000000u, 0x00000001u, 0x7F800000u,
                                           0xFF800000u, 0x7FC00000u, 0x7F800001u, 0xFFC01234u};
    for (std::uint64_t bits = 0; bits <= 0xFFFFFFFFu; bits += 0x10003) {
        patterns.push_back(static_cast<std::uint32_t>(bits));
    }
    for (int from = -1; from < 5; ++from) {
        for (int to = -1; to < 5; ++to) {
            for (std::uint32_t raw : patterns) {
                const auto x = std::bit_cast<float>(raw);
                const auto expected = Bits(ReferenceConvert(x, from, to));
                ASSERT_EQ(Bits(Converted(x, from, to)), expected) << from << to << " " << raw;
            }
        }
    }
}

TEST(ConvertTemp, KnownTemperatures) {
    EXPECT_EQ(Converted(0.0f, eCelsius, eFahrenheit), 32.0f);
    EXPECT_EQ(Converted(100.0f, eCelsius, eFahrenheit), 212.0f);
    EXPECT_EQ(Converted(-40.0f, eCelsius, eFahrenheit), -40.0f);
    EXPECT_EQ(Converted(0.0f, eKelvin, eCelsius), -273.15f);
    EXPECT_EQ(Converted(32.0f, eFahrenheit, eKelvin), 273.15f);
    // The float nearest 273.15 lies below it: the difference survives in double.
    const float nearZero = Converted(273.15f, eKelvin, eCelsius);
    EXPECT_LT(nearZero, -6.0e-6f);
    EXPECT_GT(nearZero, -6.2e-6f);
}

TEST(ConvertTemp, MultiplyAndAddAreNotFused) {
    // Found by search: the fused x * 1.8 + 32 rounds to a different float.
    const float x = 1.60128149e17f;
    const float fused = static_cast<float>(std::fma(static_cast<double>(x), 1.8, 32.0));
    const float unfused = ReferenceConvert(x, eCelsius, eFahrenheit);
    ASSERT_NE(Bits(fused), Bits(unfused));
    EXPECT_EQ(Bits(Converted(x, eCelsius, eFahrenheit)), Bits(unfused));
}

} // namespace
} // namespace vz::testing
