// Hand-worked values at the edges of the element rules. The kernel tests compare every type pair
// with the reference model; these pin the rules themselves.
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "element_rules.h"
#include "reference_rules.h"

namespace vz::testing {
namespace {

using typed::CountIndex;
using typed::StoreTemperature;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

template <class F> class FloatingCountIndex : public ::testing::Test {};
using FloatingTypes = ::testing::Types<float, double>;
TYPED_TEST_SUITE(FloatingCountIndex, FloatingTypes);

TYPED_TEST(FloatingCountIndex, TruncatesAndClamps) {
    using F = TypeParam;
    const F inf = std::numeric_limits<F>::infinity();
    const std::pair<F, int> cases[] = {{std::numeric_limits<F>::quiet_NaN(), 0},
                                       {F(-0.0), 0},
                                       {-inf, 0},
                                       {F(0.9), 0},
                                       {F(12.7), 12},
                                       {F(65534.99), 65534},
                                       {F(70000.0), 65535},
                                       {inf, 65535}};
    for (auto [x, index] : cases) {
        EXPECT_EQ(CountIndex(x), index) << x;
    }
}

TEST(CountIndex, IntegersClampAtZeroAnd65535) {
    EXPECT_EQ(CountIndex<std::int8_t>(-128), 0);
    EXPECT_EQ(CountIndex<std::int16_t>(-3), 0);
    EXPECT_EQ(CountIndex<std::uint16_t>(65535), 65535);
    EXPECT_EQ(CountIndex<std::int32_t>(70000), 65535);
    EXPECT_EQ(CountIndex<std::uint32_t>(100000), 65535);
    EXPECT_EQ(CountIndex<std::int64_t>(std::numeric_limits<std::int64_t>::min()), 0);
    EXPECT_EQ(CountIndex<std::uint64_t>(std::uint64_t{1} << 40), 65535);
}

// Integers keep the low bits of a truncation toward zero; beyond the 32-bit range the signed
// narrow outputs see 0x80000000, the others the true bits; NaN gives the indefinite value.
TEST(StoreTemperature, KeepsTheLowBitsOfTheTruncation) {
    EXPECT_EQ(Bits(StoreTemperature<float>(-0.0f)), Bits(-0.0f));
    EXPECT_EQ(StoreTemperature<std::int8_t>(300.7f), 44);
    EXPECT_EQ(StoreTemperature<std::int8_t>(200.0f), -56);
    EXPECT_EQ(StoreTemperature<std::uint16_t>(-5.5f), 65531);
    EXPECT_EQ(StoreTemperature<std::int32_t>(3e9f), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(StoreTemperature<std::uint32_t>(3e9f), 3000000000u);
    EXPECT_EQ(StoreTemperature<std::int16_t>(3e9f), 0);
    EXPECT_EQ(StoreTemperature<std::uint16_t>(3e9f), 0x5E00); // 3e9 = 0xB2D05E00
    EXPECT_EQ(StoreTemperature<std::int32_t>(kNaN), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(StoreTemperature<std::uint8_t>(kNaN), 0);
}

TEST(StoreTemperature, UInt64AroundTwoTo63) {
    EXPECT_EQ(StoreTemperature<std::uint64_t>(std::nextafter(0x1p63f, 0.0f)), 0x7FFFFF8000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(0x1.8p63f), 0xC000000000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(std::nextafter(0x1p64f, 0.0f)), 0xFFFFFF0000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(0x1p64f), 0x8000000000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(kNaN), 0x8000000000000000u);
}

} // namespace
} // namespace vz::testing
