// Registration of camsim.exe as the local server of both classes, for the current user.
#pragma once

#include <windows.h>

namespace camsim {

struct RegistrationResult {
    HRESULT result;
    const char* step; // what was being done when it failed
};

// Both classes with LocalServer32 = this executable, the embedded type library, and the
// interfaces' keys that send their calls through the type-library marshaler.
RegistrationResult RegisterServer();

// Removes everything RegisterServer writes; what is already gone is not an error.
RegistrationResult UnregisterServer();

} // namespace camsim
