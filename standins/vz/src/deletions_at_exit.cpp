#include "deletions_at_exit.h"

#include <vz/exception.h>
#include <vz/log.h>
#include <vz/singleton.h>

#include "exclusive_lock.h"

#include <algorithm>
#include <string>
#include <vector>

namespace vz::Private {

namespace {

struct PendingDeletion {
    void* object;
    unsigned order;
    void (*deleter)(void*);
};

SRWLOCK gPendingLock = SRWLOCK_INIT;
std::vector<PendingDeletion> gPending;

void ReportFailedDeletion(const wchar_t* detail) {
    gLog->WriteLine((std::wstring(L"A deletion at exit failed: ") + detail).c_str());
}

} // namespace

void DeleteAtExit(void* object, unsigned order, void (*deleter)(void*)) {
    if (deleter == nullptr) {
        throw CException(L"DeleteAtExit needs a deleter.");
    }
    // The deleter's module could otherwise be unloaded before vz.dll runs its code.
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(deleter), &module);
    ExclusiveLock lock(gPendingLock);
    gPending.push_back(PendingDeletion{object, order, deleter});
}

void RunDeletionsAtExit() {
    // A deleter may register further deletions; they run in a later round.
    for (;;) {
        std::vector<PendingDeletion> round;
        {
            ExclusiveLock lock(gPendingLock);
            round.swap(gPending);
        }
        if (round.empty()) {
            return;
        }
        std::reverse(round.begin(), round.end());
        std::stable_sort(round.begin(), round.end(),
                         [](const PendingDeletion& left, const PendingDeletion& right) {
                             return left.order < right.order;
                         });
        for (const PendingDeletion& deletion : round) {
            // One failing deleter must not keep the others from running.
            try {
                deletion.deleter(deletion.object);
            } catch (const CException& error) {
                ReportFailedDeletion(error.Message().c_str());
            } catch (...) {
                ReportFailedDeletion(L"unknown exception");
            }
        }
    }
}

} // namespace vz::Private
