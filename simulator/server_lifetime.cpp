#include "server_lifetime.h"

#include <objbase.h>

#include <atomic>

namespace camsim {

namespace {

void (*gLastReleaseAction)() = nullptr;
std::atomic<bool> gUsed{false};

} // namespace

void SetLastReleaseAction(void (*action)()) {
    gLastReleaseAction = action;
}

void AcquireServerReference() {
    CoAddRefServerProcess();
    gUsed = true;
}

void ReleaseServerReference() {
    // COM's own count, so that a new activation racing the last release starts a new server
    // instead of reaching one that is shutting down.
    if (CoReleaseServerProcess() == 0 && gLastReleaseAction != nullptr) {
        gLastReleaseAction();
    }
}

bool ServerWasUsed() {
    return gUsed;
}

} // namespace camsim
