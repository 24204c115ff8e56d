#include "global_lock.h"

#include <ostrel.h>

namespace {

BOOL CALLBACK InitializeSection(PINIT_ONCE, PVOID section, PVOID*) {
    InitializeCriticalSection(static_cast<CRITICAL_SECTION*>(section));
    return TRUE;
}

// Never deleted: a call proxy whose connection attempt failed still enters and leaves it, and a
// proxy on one thread may still be leaving it while the last handle tears the connection down on
// another.
constinit LazySection gOstrelSection;

} // namespace

CRITICAL_SECTION& LazySection::Get() {
    InitOnceExecuteOnce(&mOnce, InitializeSection, &mSection, nullptr);
    return mSection;
}

CRITICAL_SECTION& OstrelSection() {
    return gOstrelSection.Get();
}

void ostrelEnter() {
    EnterCriticalSection(&OstrelSection());
}

void ostrelLeave() {
    LeaveCriticalSection(&OstrelSection());
}

COstrelLock::COstrelLock() {
    ostrelEnter();
}

COstrelLock::~COstrelLock() {
    ostrelLeave();
}

COstrelLock& COstrelLock::operator=(const COstrelLock&) {
    return *this;
}
