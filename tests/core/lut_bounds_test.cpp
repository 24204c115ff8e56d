#include <cstdint>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "lut_bounds.h"
#include "reference_rules.h"

namespace vz::testing {
namespace {

// Exactly kLutSize entries each: the sanitizers catch any access beyond them.
struct Table {
    std::vector<float> values = std::vector<float>(kLutSize);
    std::vector<unsigned char> status = std::vector<unsigned char>(kLutSize, 0xEE);

    explicit Table(const std::function<float(unsigned)>& celsius) {
        for (unsigned i = 0; i < kLutSize; ++i) {
            values[i] = celsius(i);
        }
    }
    void Bound(std::uint32_t lo, std::uint32_t hi, float tMin, float tMax,
               ETempType unit = eCelsius) {
        BoundLut(values.data(), status.data(), LutLimits{lo, hi, tMin, tMax}, unit, 0xFFFFFFFFu);
    }
};

// 1/16 degree per count, exact in single precision: -500 at count 0.
float Rising(unsigned i) {
    return (static_cast<float>(i) - 8000.0f) * 0.0625f;
}

class BoundRisingTable : public ::testing::TestWithParam<ETempType> {};

// Count 60000 is outside: the range scan stops before countsHigh. Entries beyond a limit hold
// that limit converted once to the LUT unit.
TEST_P(BoundRisingTable, MarksBothEndsAndClampsBeyondTheMargin) {
    Table table(Rising);
    table.Bound(1000, 60000, -600.0f, 5000.0f, GetParam());

    const float lowLimit = Rising(1000) - 5.0f;
    const float highLimit = Rising(59999) + Rising(59999) / 100.0f * 5.0f;
    for (unsigned i = 0; i < kLutSize; ++i) {
        float expected = Rising(i);
        unsigned char mark = eLUTValid;
        if (i < 1000) {
            mark = expected < lowLimit ? eLUTBelow : eLUTOutside;
            expected = std::max(expected, lowLimit);
        } else if (i >= 60000) {
            mark = expected > highLimit ? eLUTAbove : eLUTOutside;
            expected = std::min(expected, highLimit);
        }
        ASSERT_EQ(table.status[i], mark) << "count " << i;
        ASSERT_EQ(Bits(table.values[i]), Bits(ReferenceConvert(expected, eCelsius, GetParam())))
            << "count " << i;
    }
    EXPECT_EQ(table.status[919], eLUTBelow);
    EXPECT_EQ(table.status[920], eLUTOutside);
}

INSTANTIATE_TEST_SUITE_P(Units, BoundRisingTable,
                         ::testing::Values(eCelsius, eFahrenheit, eKelvin, eRankine));

// Counts 100..199 are calibrated; 99 and 200 hold exactly the limits worked out by hand, 98 and
// 201 the next floats beyond them.
TEST(BoundLut, MarginIsFivePercentButAtLeastFiveDegrees) {
    struct Case {
        float low, high, lowLimit, highLimit;
    };
    for (Case c : {Case{-20, 200, -25, 210}, Case{-20, 40, -25, 45}, Case{150, 300, 142.5, 315}}) {
        SCOPED_TRACE(::testing::Message() << c.low << ".." << c.high);
        Table table([&](unsigned i) { return i < 100 ? -1000.0f : i < 200 ? c.low : 1000.0f; });
        table.values[199] = c.high;
        table.values[99] = c.lowLimit;
        table.values[98] = std::nextafter(c.lowLimit, -1000.0f);
        table.values[200] = c.highLimit;
        table.values[201] = std::nextafter(c.highLimit, 1000.0f);
        table.Bound(100, 200, -100.0f, 500.0f);

        std::vector<unsigned char> expected(106, eLUTValid); // counts 97..202
        expected[0] = expected[1] = eLUTBelow;
        expected[2] = expected[103] = eLUTOutside;
        expected[104] = expected[105] = eLUTAbove;
        EXPECT_EQ(std::vector(table.status.begin() + 97, table.status.begin() + 203), expected);
        EXPECT_EQ(table.values[98], c.lowLimit);
        EXPECT_EQ(table.values[99], c.lowLimit);
        EXPECT_EQ(table.values[200], c.highLimit);
        EXPECT_EQ(table.values[201], c.highLimit);
    }
}

// The calibrated counts reach 750 degrees, but the limit is 200: the high limit is 200 + 10.
// Below, counts down to 2000 reach -375 degrees, but the limit is -100, so the low limit is
// -105; the table lies below -100 already at the middle count 5000, which is the low edge.
TEST(BoundLut, ObservedRangeIsClampedIntoTheLimits) {
    Table high(Rising);
    high.Bound(8000, 20000, -100.0f, 200.0f);
    EXPECT_EQ(high.values[65535], 210.0f);
    EXPECT_EQ(high.status[65535], eLUTAbove);
    EXPECT_EQ(high.values[0], -5.0f);
    EXPECT_EQ(high.status[0], eLUTBelow);

    Table low(Rising);
    low.Bound(2000, 8000, -100.0f, 200.0f);
    EXPECT_EQ(low.values[0], -105.0f);
    EXPECT_EQ(low.status[4999], eLUTBelow);
    EXPECT_EQ(low.status[5000], eLUTOutside);
    EXPECT_EQ(low.status[5001], eLUTValid);
}

TEST(BoundLut, FlatTableReachingTheLastCountIsAllAbove) {
    Table table([](unsigned) { return 20.0f; });
    table.Bound(0, 65535, -50.0f, 100.0f);
    EXPECT_EQ(table.status, std::vector<unsigned char>(kLutSize, eLUTAbove));
    EXPECT_EQ(table.values, std::vector<float>(kLutSize, 25.0f));
}

// Without a high saturation point every entry from the high edge up is clamped, although it lies
// within the margin; without a low one the entries below the low edge keep their values.
TEST(BoundLut, MissingSaturationDiffersBetweenTheSides) {
    Table table([](unsigned i) { return i < 1000 ? 8.0f : i < 2000 ? 10.0f : 12.0f; });
    table.Bound(1000, 2000, -50.0f, 100.0f);
    for (unsigned i = 0; i < kLutSize; ++i) {
        ASSERT_EQ(table.status[i], i < 1000 ? eLUTOutside : i < 2000 ? eLUTValid : eLUTAbove);
        ASSERT_EQ(table.values[i], i < 1000 ? 8.0f : i < 2000 ? 10.0f : 15.0f);
    }
}

// Count 0 holds the minimum: no low edge, nothing marked low. The maximum at the last count is
// beyond the scan: a high edge without saturation.
TEST(BoundLut, MissingLowEdgeMarksNothingLow) {
    Table table(Rising);
    table.Bound(0, 65535, -600.0f, 5000.0f);
    std::vector<unsigned char> expected(kLutSize, eLUTValid);
    expected[65535] = eLUTAbove;
    EXPECT_EQ(table.status, expected);
    EXPECT_EQ(table.values[65535], Rising(65534) + Rising(65534) / 100.0f * 5.0f);
}

// Records the engine does not validate run as usual inside the table.
TEST(BoundLut, InvalidRecordsStayInsideTheTable) {
    struct Case {
        std::uint32_t lo, hi;
        float tMin, tMax;
        unsigned char first, last; // expected marks of counts 0 and 65535
    };
    const Case cases[] = {{60000, 100, -600, 5000, eLUTBelow, eLUTAbove},
                          {0, 0xFFFFFFFFu, -600, 5000, eLUTAbove, eLUTAbove},
                          {0xFFFFFFFFu, 70000, -600, 5000, eLUTAbove, eLUTAbove},
                          {70000, 80000, -600, 5000, eLUTAbove, eLUTAbove},
                          {1000, 2000, 100, 0, eLUTBelow, eLUTAbove}};
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.lo << ".." << c.hi << " " << c.tMin);
        Table table(Rising);
        table.Bound(c.lo, c.hi, c.tMin, c.tMax);
        EXPECT_EQ(table.status[0], c.first);
        EXPECT_EQ(table.status[65535], c.last);
    }
}

} // namespace
} // namespace vz::testing
