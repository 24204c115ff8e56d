#include "com_apartment.h"

#include <objbase.h>

#include "module_state.h"

bool EnsureComApartment() {
    if (gComInitialized) {
        return true;
    }
    // S_FALSE (COM already initialised on this thread) counts as success: it must be balanced.
    if (SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        gComInitialized = true;
    }
    return gComInitialized;
}

void LeaveComApartmentIfUnused() {
    if (gComInitialized && gHostRefs == 0 && gCalRefs == 0) {
        CoUninitialize();
        gComInitialized = false;
    }
}
