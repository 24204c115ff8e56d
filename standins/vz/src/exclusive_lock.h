#pragma once

#include <windows.h>

namespace vz {

// Holds a slim reader/writer lock exclusively for its own lifetime.
class ExclusiveLock {
public:
    explicit ExclusiveLock(SRWLOCK& lock) : m_lock(lock) { AcquireSRWLockExclusive(&m_lock); }
    ~ExclusiveLock() { ReleaseSRWLockExclusive(&m_lock); }
    ExclusiveLock(const ExclusiveLock&) = delete;
    ExclusiveLock& operator=(const ExclusiveLock&) = delete;

private:
    SRWLOCK& m_lock;
};

} // namespace vz
