#include "global_lock.h"

#include <ostrel.h>

namespace {

CRITICAL_SECTION gOstrelSection;
INIT_ONCE gOstrelSectionOnce = INIT_ONCE_STATIC_INIT;

BOOL CALLBACK InitializeSection(PINIT_ONCE, PVOID, PVOID*) {
    InitializeCriticalSection(&gOstrelSection);
    return TRUE;
}

} // namespace

// Created lazily, so loading the library creates nothing, and never deleted: a call proxy whose
// connection attempt failed still enters and leaves it, and a proxy on one thread may still be
// leaving it while the last handle tears the connection down on another.
CRITICAL_SECTION& OstrelSection() {
    InitOnceExecuteOnce(&gOstrelSectionOnce, InitializeSection, nullptr, nullptr);
    return gOstrelSection;
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
