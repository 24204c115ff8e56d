#pragma once

#include <windows.h>

namespace vz {

// Holds a slim reader/writer lock exclusively for its own lifetime.
class ExclusiveLock {
public:
    explicit ExclusiveLock(SRWLOCK& lock) : mLock(lock) { AcquireSRWLockExclusive(&mLock); }
    ~ExclusiveLock() { ReleaseSRWLockExclusive(&mLock); }
    ExclusiveLock(const ExclusiveLock&) = delete;
    ExclusiveLock& operator=(const ExclusiveLock&) = delete;

private:
    SRWLOCK& mLock;
};

} // namespace vz
