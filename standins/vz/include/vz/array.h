#pragma once

#include <vz/exception.h>

// Limits are read as (std::numeric_limits<T>::max)(), clear of the max macro of <windows.h>.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

namespace vz {

// The growth step that doubles the capacity instead of adding a fixed number of elements.
constexpr unsigned short kGrowByDoubling = 65535;

// A growable array of plain values whose table lives on the process heap. Elements are moved
// as raw memory, and destroying the array does not destroy whatever they point to.
template <class T> class TArray {
    static_assert(std::is_trivially_copyable_v<T>, "TArray moves its elements as raw memory");
    static_assert(alignof(T) <= MEMORY_ALLOCATION_ALIGNMENT, "the process heap aligns no further");

public:
    // growthStep: elements added per growth, or kGrowByDoubling.
    explicit TArray(unsigned short growthStep)
        : mTable(nullptr), mCapacity(0), mCount(0), mGrowthStep(growthStep) {
        if (growthStep == 0) {
            throw CException(L"The growth step of an array must not be 0.");
        }
    }

    TArray(const TArray& other)
        : mTable(nullptr), mCapacity(0), mCount(0), mGrowthStep(other.mGrowthStep) {
        if (!Reserve(other.mCount)) {
            throw std::bad_alloc();
        }
        if (other.mCount != 0) {
            std::memcpy(static_cast<void*>(mTable), other.mTable, other.mCount * sizeof(T));
        }
        mCount = other.mCount;
    }

    TArray& operator=(const TArray& other) {
        TArray copy(other);
        std::swap(mTable, copy.mTable);
        std::swap(mCapacity, copy.mCapacity);
        std::swap(mCount, copy.mCount);
        std::swap(mGrowthStep, copy.mGrowthStep);
        return *this;
    }

    ~TArray() {
        if (mTable != nullptr) {
            HeapFree(GetProcessHeap(), 0, mTable);
        }
    }

    // Grows the table to hold count elements and sets the count; new elements are zero.
    // Returns false, leaving the array as it was, when the table cannot grow.
    bool SetCount(unsigned count) {
        if (!Reserve(count)) {
            return false;
        }
        if (count > mCount) {
            std::memset(static_cast<void*>(mTable + mCount), 0, (count - mCount) * sizeof(T));
        }
        mCount = count;
        return true;
    }

    bool Add(const T& element) {
        if (mCount == (std::numeric_limits<unsigned>::max)()) {
            return false;
        }
        // The element may live in this table, which growing can move.
        const T copy = element;
        if (!Reserve(mCount + 1)) {
            return false;
        }
        mTable[mCount++] = copy;
        return true;
    }

    bool RemoveAt(unsigned index) {
        if (index >= mCount) {
            return false;
        }
        std::memmove(static_cast<void*>(mTable + index), mTable + index + 1,
                     (mCount - index - 1) * sizeof(T));
        --mCount;
        return true;
    }

    unsigned GetCount() const { return mCount; }
    T* GetData() { return mTable; }

    T& operator[](unsigned index) {
        CheckIndex(index);
        return mTable[index];
    }

private:
    bool Reserve(unsigned count) {
        if (count <= mCapacity) {
            return true;
        }
        // A capacity or byte size that does not fit counts as a failed allocation.
        const std::uint64_t capacity = CapacityFor(count);
        if (capacity > (std::numeric_limits<unsigned>::max)() ||
            capacity > (std::numeric_limits<SIZE_T>::max)() / sizeof(T)) {
            return false;
        }
        const SIZE_T bytes = static_cast<SIZE_T>(capacity) * sizeof(T);
        void* table = mTable == nullptr ? HeapAlloc(GetProcessHeap(), 0, bytes)
                                        : HeapReAlloc(GetProcessHeap(), 0, mTable, bytes);
        if (table == nullptr) {
            return false;
        }
        mTable = static_cast<T*>(table);
        mCapacity = static_cast<unsigned>(capacity);
        return true;
    }

    // A table grown to exactly a multiple of the step still gets one step of room.
    std::uint64_t CapacityFor(unsigned count) const {
        if (mGrowthStep != kGrowByDoubling) {
            return (std::uint64_t{count} / mGrowthStep + 1) * mGrowthStep;
        }
        std::uint64_t capacity = mCapacity == 0 ? 1 : mCapacity;
        while (capacity < count) {
            capacity *= 2;
        }
        return capacity;
    }

    void CheckIndex(unsigned index) const {
        if (index >= mCount) {
            throw CException(L"Index out of bounds.");
        }
    }

    T* mTable;
    unsigned mCapacity;
    unsigned mCount;
    unsigned short mGrowthStep;
};

} // namespace vz
