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
using I64 = std::numeric_limits<std::int64_t>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

template <class F> void ExpectFloatingIndices() {
    const F inf = std::numeric_limits<F>::infinity();
    const std::pair<F, int> cases[] = {{std::numeric_limits<F>::quiet_NaN(), 0},
                                       {F(-0.0), 0},
                                       {-inf, 0},
                                       {F(-3.0), 0},
                                       {F(0.9), 0},
                                       {F(1.0), 1},
                                       {F(12.7), 12},
                                       {F(65534.99), 65534},
                                       {F(65535.0), 65535},
                                       {F(70000.0), 65535},
                                       {std::ldexp(F(1), 40), 65535},
                                       {inf, 65535}};
    for (auto [x, index] : cases) {
        EXPECT_EQ(CountIndex(x), index) << x;
    }
}

TEST(CountIndex, FloatTruncatesAndClamps) {
    ExpectFloatingIndices<float>();
}
TEST(CountIndex, DoubleTruncatesAndClamps) {
    ExpectFloatingIndices<double>();
}

TEST(CountIndex, IntegersClampAtZeroAnd65535) {
    EXPECT_EQ(CountIndex<std::int8_t>(-128), 0);
    EXPECT_EQ(CountIndex<std::int8_t>(127), 127);
    EXPECT_EQ(CountIndex<std::uint8_t>(255), 255);
    EXPECT_EQ(CountIndex<std::int16_t>(-3), 0);
    EXPECT_EQ(CountIndex<std::uint16_t>(65535), 65535);
    EXPECT_EQ(CountIndex<std::int32_t>(65534), 65534);
    EXPECT_EQ(CountIndex<std::int32_t>(70000), 65535);
    EXPECT_EQ(CountIndex<std::uint32_t>(100000), 65535);
    EXPECT_EQ(CountIndex<std::int64_t>(I64::min()), 0);
    EXPECT_EQ(CountIndex<std::int64_t>(std::int64_t{1} << 40), 65535);
    EXPECT_EQ(CountIndex<std::uint64_t>(std::uint64_t{1} << 40), 65535);
}

TEST(StoreTemperature, FloatingOutputsKeepTheValue) {
    EXPECT_EQ(Bits(StoreTemperature<float>(-0.0f)), Bits(-0.0f));
    EXPECT_EQ(Bits(StoreTemperature<float>(kNaN)), Bits(kNaN));
    EXPECT_EQ(StoreTemperature<double>(0.1f), static_cast<double>(0.1f));
}

TEST(StoreTemperature, IntegersKeepTheLowBitsOfTheTruncation) {
    EXPECT_EQ(StoreTemperature<std::int8_t>(300.7f), 44);
    EXPECT_EQ(StoreTemperature<std::uint8_t>(300.7f), 44);
    EXPECT_EQ(StoreTemperature<std::int8_t>(200.0f), -56);
    EXPECT_EQ(StoreTemperature<std::uint8_t>(-1.5f), 255);
    EXPECT_EQ(StoreTemperature<std::int16_t>(-5.5f), -5);
    EXPECT_EQ(StoreTemperature<std::uint16_t>(-5.5f), 65531);
    EXPECT_EQ(StoreTemperature<std::uint16_t>(70000.9f), 4464);
    EXPECT_EQ(StoreTemperature<std::uint32_t>(-1.5f), 0xFFFFFFFFu);
    EXPECT_EQ(StoreTemperature<std::int64_t>(-1.5f), -1);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(-1.5f), 0xFFFFFFFFFFFFFFFFu);
}

// Beyond the 32-bit range the signed narrow outputs see 0x80000000, the others the true bits.
TEST(StoreTemperature, OverflowDependsOnTheTruncationWidth) {
    EXPECT_EQ(StoreTemperature<std::int32_t>(3e9f), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(StoreTemperature<std::uint32_t>(3e9f), 3000000000u);
    EXPECT_EQ(StoreTemperature<std::int16_t>(3e9f), 0);
    EXPECT_EQ(StoreTemperature<std::uint16_t>(3e9f), 0x5E00); // 3e9 = 0xB2D05E00
    EXPECT_EQ(StoreTemperature<std::int8_t>(-3e9f), 0);
    EXPECT_EQ(StoreTemperature<std::int64_t>(0x1p40f), std::int64_t{1} << 40);
    EXPECT_EQ(StoreTemperature<std::int64_t>(1e19f), I64::min());
}

TEST(StoreTemperature, NaNTakesTheIndefiniteValue) {
    EXPECT_EQ(StoreTemperature<std::int8_t>(kNaN), 0);
    EXPECT_EQ(StoreTemperature<std::uint8_t>(kNaN), 0);
    EXPECT_EQ(StoreTemperature<std::uint16_t>(kNaN), 0);
    EXPECT_EQ(StoreTemperature<std::uint32_t>(kNaN), 0u);
    EXPECT_EQ(StoreTemperature<std::int32_t>(kNaN), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(StoreTemperature<std::int64_t>(kNaN), I64::min());
    EXPECT_EQ(StoreTemperature<std::uint64_t>(kNaN), 0x8000000000000000u);
}

TEST(StoreTemperature, UInt64AroundTwoTo63) {
    EXPECT_EQ(StoreTemperature<std::uint64_t>(std::nextafter(0x1p63f, 0.0f)), 0x7FFFFF8000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(0x1p63f), 0x8000000000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(0x1.8p63f), 0xC000000000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(std::nextafter(0x1p64f, 0.0f)), 0xFFFFFF0000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(0x1p64f), 0x8000000000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(kInf), 0x8000000000000000u);
    EXPECT_EQ(StoreTemperature<std::uint64_t>(-kInf), 0x8000000000000000u);
}

} // namespace
} // namespace vz::testing
