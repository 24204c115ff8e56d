#pragma once

#include <windows.h>

namespace vz {

// Holds a critical section for its own lifetime.
class CriticalSectionLock {
public:
    explicit CriticalSectionLock(CRITICAL_SECTION& section) : mSection(section) {
        EnterCriticalSection(&mSection);
    }
    ~CriticalSectionLock() { LeaveCriticalSection(&mSection); }
    CriticalSectionLock(const CriticalSectionLock&) = delete;
    CriticalSectionLock& operator=(const CriticalSectionLock&) = delete;

private:
    CRITICAL_SECTION& mSection;
};

} // namespace vz
