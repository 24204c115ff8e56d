#pragma once

#include <vz/api.h>

// <winbase.h> defines Yield() away to nothing, which would swallow CThread::Yield. Including
// it here first and dropping the macro keeps later inclusions from bringing it back.
#include <windows.h>
#undef Yield

namespace vz {

class VZ_API CThread {
public:
    // Gives the rest of the current time slice to another ready thread.
    static void Yield();
};

} // namespace vz
