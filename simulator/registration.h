// Registration of camsim.exe as the local server of both classes, for the current user.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace camsim {

// A key registration writes that already points at another executable.
struct ForeignKey {
    std::wstring key;  // below the class store, e.g. "CLSID\{...}"
    std::wstring file; // the file it points at
};

struct RegistrationResult {
    HRESULT result;
    const char* step;                        // what was being done when it failed
    std::optional<ForeignKey> refusing = {}; // set when another server's key stopped registration
};

// What registration does with keys that point at another executable.
enum class ForeignKeys { kRefuse, kReplace };

// Both classes with LocalServer32 = this executable, the embedded type library, and the
// interfaces' keys that send their calls through the type-library marshaler. With kRefuse, a key
// of another server (a class's server, an interface's or our type library's file) makes it
// write nothing and name that key.
RegistrationResult RegisterServer(ForeignKeys foreignKeys);

// Removes what RegisterServer writes, where it still points at this executable; keys of other
// servers, and what is already gone, are not an error.
RegistrationResult UnregisterServer();

} // namespace camsim
