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
        : m_table(nullptr), m_capacity(0), m_count(0), m_growthStep(growthStep) {
        if (growthStep == 0) {
            throw CException(L"The growth step of an array must not be 0.");
        }
    }

    TArray(const TArray& other)
        : m_table(nullptr), m_capacity(0), m_count(0), m_growthStep(other.m_growthStep) {
        if (!Reserve(other.m_count)) {
            throw std::bad_alloc();
        }
        if (other.m_count != 0) {
            std::memcpy(static_cast<void*>(m_table), other.m_table, other.m_count * sizeof(T));
        }
        m_count = other.m_count;
    }

    TArray& operator=(const TArray& other) {
        TArray copy(other);
        std::swap(m_table, copy.m_table);
        std::swap(m_capacity, copy.m_capacity);
        std::swap(m_count, copy.m_count);
        std::swap(m_growthStep, copy.m_growthStep);
        return *this;
    }

    ~TArray() {
        if (m_table != nullptr) {
            HeapFree(GetProcessHeap(), 0, m_table);
        }
    }

    // Grows the table to hold count elements and sets the count; new elements are zero.
    // Returns false, leaving the array as it was, when the table cannot grow.
    bool SetCount(unsigned count) {
        if (!Reserve(count)) {
            return false;
        }
        if (count > m_count) {
            std::memset(static_cast<void*>(m_table + m_count), 0, (count - m_count) * sizeof(T));
        }
        m_count = count;
        return true;
    }

    bool Add(const T& element) {
        if (m_count == (std::numeric_limits<unsigned>::max)()) {
            return false;
        }
        // The element may live in this table, which growing can move.
        const T copy = element;
        if (!Reserve(m_count + 1)) {
            return false;
        }
        m_table[m_count++] = copy;
        return true;
    }

    bool RemoveAt(unsigned index) {
        if (index >= m_count) {
            return false;
        }
        std::memmove(static_cast<void*>(m_table + index), m_table + index + 1,
                     (m_count - index - 1) * sizeof(T));
        --m_count;
        return true;
    }

    unsigned GetCount() const { return m_count; }
    T* GetData() { return m_table; }

    T& operator[](unsigned index) {
        CheckIndex(index);
        return m_table[index];
    }

private:
    bool Reserve(unsigned count) {
        if (count <= m_capacity) {
            return true;
        }
        // A capacity or byte size that does not fit counts as a failed allocation.
        const std::uint64_t capacity = CapacityFor(count);
        if (capacity > (std::numeric_limits<unsigned>::max)() ||
            capacity > (std::numeric_limits<SIZE_T>::max)() / sizeof(T)) {
            return false;
        }
        const SIZE_T bytes = static_cast<SIZE_T>(capacity) * sizeof(T);
        void* table = m_table == nullptr ? HeapAlloc(GetProcessHeap(), 0, bytes)
                                         : HeapReAlloc(GetProcessHeap(), 0, m_table, bytes);
        if (table == nullptr) {
            return false;
        }
        m_table = static_cast<T*>(table);
        m_capacity = static_cast<unsigned>(capacity);
        return true;
    }

    // A table grown to exactly a multiple of the step still gets one step of room.
    std::uint64_t CapacityFor(unsigned count) const {
        if (m_growthStep != kGrowByDoubling) {
            return (std::uint64_t{count} / m_growthStep + 1) * m_growthStep;
        }
        std::uint64_t capacity = m_capacity == 0 ? 1 : m_capacity;
        while (capacity < count) {
            capacity *= 2;
        }
        return capacity;
    }

    void CheckIndex(unsigned index) const {
        if (index >= m_count) {
            throw CException(L"Index out of bounds.");
        }
    }

    T* m_table;
    unsigned m_capacity;
    unsigned m_count;
    unsigned short m_growthStep;
};

} // namespace vz
