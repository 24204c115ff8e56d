#include <vz/array.h>

#include <gtest/gtest.h>

namespace {

struct GrowthCase {
    unsigned short step;
    unsigned startCount; // reached with SetCount before the measured growth
    unsigned count;
    unsigned expectedCapacity;
};

class ArrayGrowth : public testing::TestWithParam<GrowthCase> {};

TEST_P(ArrayGrowth, CapacityAfterSetCount) {
    const GrowthCase& growth = GetParam();
    vz::TArray<unsigned char> array(growth.step);
    ASSERT_TRUE(array.SetCount(growth.startCount));

    ASSERT_TRUE(array.SetCount(growth.count));

    EXPECT_EQ(array.GetCount(), growth.count);
    EXPECT_EQ(array.GetCapacity(), growth.expectedCapacity);
}

// Growth by steps rounds up past the count; doubling rounds up to a power of two.
INSTANTIATE_TEST_SUITE_P(, ArrayGrowth,
                         testing::Values(GrowthCase{5, 0, 0, 0}, GrowthCase{5, 0, 4, 5},
                                         GrowthCase{5, 0, 5, 10}, GrowthCase{5, 4, 7, 10},
                                         GrowthCase{vz::kGrowByDoubling, 0, 1, 1},
                                         GrowthCase{vz::kGrowByDoubling, 3, 4, 4},
                                         GrowthCase{vz::kGrowByDoubling, 3, 13, 16}));

TEST(Array, IndexAtCountThrowsIndexOutOfBounds) {
    vz::TArray<int> array(5);
    ASSERT_TRUE(array.SetCount(4));
    const vz::TArray<int>& readOnly = array;

    for (unsigned index : {4u, 5u, 0xFFFFFFFFu}) {
        try {
            (void)readOnly[index];
            ADD_FAILURE() << "index " << index << " was accepted";
        } catch (const vz::CException& error) {
            EXPECT_STREQ(error.Message().c_str(), L"Index out of bounds.");
        }
        EXPECT_THROW(array[index], vz::CException);
    }
    EXPECT_NO_THROW(array[3]);
}

// Large enough that a table of a few hundred million elements cannot be had.
struct Megabyte {
    unsigned char bytes[1 << 20];
};

TEST(Array, AllocationFailureLeavesTheArrayUnchanged) {
    vz::TArray<Megabyte> array(5);
    ASSERT_TRUE(array.SetCount(3));
    array[0].bytes[0] = 0x5A;
    const Megabyte* table = array.GetData();
    const unsigned capacity = array.GetCapacity();

    // 2^28 elements of 1 MiB: more than any address space holds.
    EXPECT_FALSE(array.SetCount(1u << 28));
    EXPECT_FALSE(array.SetCount(0xFFFFFFFFu)); // a capacity past 32 bits

    EXPECT_EQ(array.GetCount(), 3u);
    EXPECT_EQ(array.GetCapacity(), capacity);
    EXPECT_EQ(array.GetData(), table);
    EXPECT_EQ(array[0].bytes[0], 0x5A);
}

} // namespace
