#include <vz/array.h>

#include <gtest/gtest.h>

namespace {

// The table's capacity in elements, as the process heap, where the array keeps it, sees it.
template <class T> unsigned Capacity(vz::TArray<T>& array) {
    return array.GetData() == nullptr
               ? 0
               : static_cast<unsigned>(HeapSize(GetProcessHeap(), 0, array.GetData()) / sizeof(T));
}

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
    EXPECT_EQ(Capacity(array), growth.expectedCapacity);
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

    try {
        (void)array[4];
        ADD_FAILURE() << "index 4 was accepted";
    } catch (const vz::CException& error) {
        EXPECT_STREQ(error.Message().c_str(), L"Index out of bounds.");
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
    const unsigned capacity = Capacity(array);

    // 2^28 elements of 1 MiB: more than any address space holds.
    EXPECT_FALSE(array.SetCount(1u << 28));
    EXPECT_FALSE(array.SetCount(0xFFFFFFFFu)); // a capacity past 32 bits

    EXPECT_EQ(array.GetCount(), 3u);
    EXPECT_EQ(Capacity(array), capacity);
    EXPECT_EQ(array.GetData(), table);
    EXPECT_EQ(array[0].bytes[0], 0x5A);
}

} // namespace
