#include "com_apartment.h"

#include <objbase.h>

#include "failure_note.h"
#include "module_state.h"

bool EnsureComApartment() {
    if (gComInitialized) {
        return true;
    }
    // S_FALSE (COM already initialised on this thread) counts as success: it must be balanced.
    const HRESULT hr = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (FAILED(hr)) {
        failure_note::WriteFailedCall("CoInitializeEx of a single-threaded apartment", hr);
        return false;
    }
    gComInitialized = true;
    return true;
}

void LeaveComApartmentIfUnused() {
    if (gComInitialized && gHostRefs == 0 && gCalRefs == 0) {
        CoUninitialize();
        gComInitialized = false;
    }
}
