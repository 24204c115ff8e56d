// Looks at the library-wide lock from outside the thread that may hold it.
#pragma once

#include <thread>

#include "global_lock.h"

// Whether another thread could take the library-wide lock right now.
inline bool FreeForOtherThreads() {
    bool entered = false;
    std::thread other([&] {
        entered = TryEnterCriticalSection(&OstrelSection()) != 0;
        if (entered) {
            LeaveCriticalSection(&OstrelSection());
        }
    });
    other.join();
    return entered;
}
