#include "deletions_at_exit.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_DETACH) {
        vz::Private::RunDeletionsAtExit();
    }
    return TRUE;
}
