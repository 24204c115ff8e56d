#pragma once

#include <windows.h>

namespace vz {

// Holds a critical section for its own lifetime.
class CriticalSectionLock {
public:
    explicit CriticalSectionLock(CRITICAL_SECTION& section) : m_section(section) {
        EnterCriticalSection(&m_section);
    }
    ~CriticalSectionLock() { LeaveCriticalSection(&m_section); }
    CriticalSectionLock(const CriticalSectionLock&) = delete;
    CriticalSectionLock& operator=(const CriticalSectionLock&) = delete;

private:
    CRITICAL_SECTION& m_section;
};

} // namespace vz
