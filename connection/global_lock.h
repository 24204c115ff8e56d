// The library's locks: re-entrant critical sections created on first use and kept for the rest of
// the process, so that loading the library creates nothing and no lock is ever used after it was
// deleted.
#pragma once

#include <windows.h>

class LazySection {
public:
    CRITICAL_SECTION& Get();

private:
    CRITICAL_SECTION mSection{};
    INIT_ONCE mOnce = INIT_ONCE_STATIC_INIT;
};

// Holds a section for its scope.
class SectionGuard {
public:
    explicit SectionGuard(LazySection& section) : mSection(section.Get()) {
        EnterCriticalSection(&mSection);
    }
    ~SectionGuard() { LeaveCriticalSection(&mSection); }
    SectionGuard(const SectionGuard&) = delete;
    SectionGuard& operator=(const SectionGuard&) = delete;

private:
    CRITICAL_SECTION& mSection;
};

// The library-wide lock that serialises every call into the server.
CRITICAL_SECTION& OstrelSection();
