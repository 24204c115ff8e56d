#include <vz/array.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>

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

INSTANTIATE_TEST_SUITE_P(StepOfFive, ArrayGrowth,
                         testing::Values(GrowthCase{5, 0, 0, 0}, GrowthCase{5, 0, 1, 5},
                                         GrowthCase{5, 0, 4, 5}, GrowthCase{5, 0, 5, 10},
                                         GrowthCase{5, 0, 6, 10}, GrowthCase{5, 0, 10, 15},
                                         GrowthCase{5, 3, 4, 5}, GrowthCase{5, 4, 7, 10}));

INSTANTIATE_TEST_SUITE_P(Doubling, ArrayGrowth,
                         testing::Values(GrowthCase{vz::kGrowByDoubling, 0, 1, 1},
                                         GrowthCase{vz::kGrowByDoubling, 0, 2, 2},
                                         GrowthCase{vz::kGrowByDoubling, 0, 5, 8},
                                         GrowthCase{vz::kGrowByDoubling, 3, 4, 4},
                                         GrowthCase{vz::kGrowByDoubling, 3, 5, 8},
                                         GrowthCase{vz::kGrowByDoubling, 3, 13, 16},
                                         GrowthCase{vz::kGrowByDoubling, 8, 9, 16}));

TEST(Array, AddGrowsByDoublingOneElementAtATime) {
    vz::TArray<int> array(vz::kGrowByDoubling);
    const unsigned expected[] = {1, 2, 4, 4, 8, 8, 8, 8, 16};
    for (unsigned i = 0; i < std::size(expected); ++i) {
        ASSERT_TRUE(array.Add(static_cast<int>(i)));
        EXPECT_EQ(array.GetCapacity(), expected[i]) << "after " << i + 1 << " additions";
    }
}

TEST(Array, SetCountZeroesNewElementsAndKeepsOldOnes) {
    vz::TArray<int> array(5);
    ASSERT_TRUE(array.Add(7));
    ASSERT_TRUE(array.SetCount(0));
    ASSERT_TRUE(array.SetCount(3));
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array[2], 0);

    array[1] = 9;
    ASSERT_TRUE(array.SetCount(12));
    EXPECT_EQ(array[1], 9);
    EXPECT_EQ(array[11], 0);
}

TEST(Array, AddOfOwnElementSurvivesGrowth) {
    vz::TArray<int> array(1);
    ASSERT_TRUE(array.Add(42));
    ASSERT_EQ(array.GetCapacity(), 2u);
    ASSERT_TRUE(array.Add(43));

    ASSERT_TRUE(array.Add(array[0]));

    EXPECT_EQ(array.GetCapacity(), 4u);
    EXPECT_EQ(array[2], 42);
}

TEST(Array, RemoveAtShiftsTheRest) {
    vz::TArray<int> array(5);
    for (int value : {10, 20, 30, 40}) {
        ASSERT_TRUE(array.Add(value));
    }

    EXPECT_TRUE(array.RemoveAt(1));
    EXPECT_FALSE(array.RemoveAt(3));

    ASSERT_EQ(array.GetCount(), 3u);
    EXPECT_EQ(array[0], 10);
    EXPECT_EQ(array[1], 30);
    EXPECT_EQ(array[2], 40);
}

TEST(Array, RemoveAllEmptiesAndKeepsTheTable) {
    vz::TArray<int> array(5);
    ASSERT_TRUE(array.SetCount(7));

    array.RemoveAll();

    EXPECT_EQ(array.GetCount(), 0u);
    EXPECT_EQ(array.GetCapacity(), 10u);
    EXPECT_THROW(array[0], vz::CException);
}

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

TEST(Array, GrowthStepZeroIsRefused) {
    EXPECT_THROW(vz::TArray<int>(0), vz::CException);
}

TEST(Array, CopiesOwnTheirElements) {
    vz::TArray<int> original(5);
    ASSERT_TRUE(original.Add(1));
    ASSERT_TRUE(original.Add(2));

    vz::TArray<int> copy(original);
    vz::TArray<int> assigned(vz::kGrowByDoubling);
    ASSERT_TRUE(assigned.Add(99));
    assigned = original;
    original[0] = 100;

    for (const vz::TArray<int>* array : {&copy, &assigned}) {
        ASSERT_EQ(array->GetCount(), 2u);
        EXPECT_EQ((*array)[0], 1);
        EXPECT_EQ((*array)[1], 2);
        EXPECT_NE(array->GetData(), original.GetData());
    }
    // The copy takes over the growth step too.
    EXPECT_EQ(assigned.GetCapacity(), 5u);
}

// Large enough that a table of a few hundred million elements cannot be had.
struct Megabyte {
    unsigned char bytes[1 << 20];
};

class ArrayAllocationFailure : public testing::TestWithParam<unsigned> {};

TEST_P(ArrayAllocationFailure, LeavesTheArrayUnchanged) {
    const unsigned startCount = GetParam();
    vz::TArray<Megabyte> array(5);
    ASSERT_TRUE(array.SetCount(startCount));
    if (startCount != 0) {
        array[0].bytes[0] = 0x5A;
    }
    const Megabyte* table = array.GetData();
    const unsigned capacity = array.GetCapacity();

    // 2^28 elements of 1 MiB: more than any address space holds.
    EXPECT_FALSE(array.SetCount(1u << 28));
    EXPECT_FALSE(array.SetCount(0xFFFFFFFFu)); // a capacity past 32 bits

    EXPECT_EQ(array.GetCount(), startCount);
    EXPECT_EQ(array.GetCapacity(), capacity);
    EXPECT_EQ(array.GetData(), table);
    if (startCount != 0) {
        EXPECT_EQ(array[0].bytes[0], 0x5A);
    }
}

INSTANTIATE_TEST_SUITE_P(EmptyOrNot, ArrayAllocationFailure, testing::Values(0u, 3u));

TEST(Array, DoublingPastThirtyTwoBitsFails) {
    vz::TArray<Megabyte> array(vz::kGrowByDoubling);
    EXPECT_FALSE(array.SetCount(0x80000001u));
    EXPECT_EQ(array.GetCapacity(), 0u);
}

// Element round trips for element types of different sizes and alignments.
struct Record {
    void* handler;
    double value;
    bool flag;

    bool operator==(const Record&) const = default;
};

template <class T> T MakeElement(int seed);
template <> unsigned char MakeElement(int seed) {
    return static_cast<unsigned char>(seed);
}
template <> std::uint64_t MakeElement(int seed) {
    return 0x100000000ull * seed + seed;
}
template <> Record MakeElement(int seed) {
    return Record{reinterpret_cast<void*>(static_cast<std::uintptr_t>(seed)), seed * 0.5,
                  seed % 2 == 0};
}

template <class T> class ArrayElements : public testing::Test {};
using ElementTypes = testing::Types<unsigned char, std::uint64_t, Record>;
TYPED_TEST_SUITE(ArrayElements, ElementTypes);

TYPED_TEST(ArrayElements, KeepValuesInOrderThroughGrowthAndRemoval) {
    vz::TArray<TypeParam> array(3);
    for (int seed = 0; seed < 20; ++seed) {
        ASSERT_TRUE(array.Add(MakeElement<TypeParam>(seed)));
    }
    ASSERT_TRUE(array.RemoveAt(0));
    ASSERT_TRUE(array.RemoveAt(18));

    ASSERT_EQ(array.GetCount(), 18u);
    for (unsigned i = 0; i < array.GetCount(); ++i) {
        EXPECT_EQ(array[i], MakeElement<TypeParam>(static_cast<int>(i) + 1)) << "element " << i;
    }
}

} // namespace
