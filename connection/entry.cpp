#include <windows.h>

// Loading does nothing: the apartment, the lock, the connection and the event window are all
// created on first use.
BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}
