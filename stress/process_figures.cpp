#include <windows.h>

#include <psapi.h>

#include "stress_modes.h"

namespace stress {
namespace {

// Handle values are multiples of 4, handed out lowest first; past this many unused values in a
// row no more are open.
constexpr ULONG_PTR kTrailingGap = 4096;

// Wine's GetProcessHandleCount answers 0, so the handle table is probed instead: a value is an
// open handle when GetHandleInformation accepts it.
unsigned OpenHandleCount() {
    unsigned open = 0;
    ULONG_PTR lastOpen = 0;
    for (ULONG_PTR value = 4; value - lastOpen < kTrailingGap * 4; value += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) {
            ++open;
            lastOpen = value;
        }
    }
    return open;
}

} // namespace

ProcessFigures MeasureProcess() {
    ProcessFigures figures;
    figures.handles = OpenHandleCount();
    PROCESS_MEMORY_COUNTERS memory{};
    if (GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory))) {
        // The commit charge: what Task Manager calls private bytes.
        figures.privateBytes = memory.PagefileUsage;
    }
    return figures;
}

} // namespace stress
