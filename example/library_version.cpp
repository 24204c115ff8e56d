#include "library_version.h"

#include <windows.h>

#include <vector>

#include "display_name.h"

namespace convert {

std::optional<LoadedLibrary> LoadedOstrel() {
    const HMODULE module = GetModuleHandleW(L"ostrel.dll");
    std::wstring file(MAX_PATH, L'\0');
    DWORD length = 0;
    while (module && (length = GetModuleFileNameW(
                          module, file.data(), static_cast<DWORD>(file.size()))) == file.size()) {
        file.resize(file.size() * 2);
    }
    if (length == 0) {
        return std::nullopt;
    }
    file.resize(length);
    DWORD ignored = 0;
    std::vector<BYTE> resource(GetFileVersionInfoSizeW(file.c_str(), &ignored));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT size = 0;
    if (resource.empty() ||
        !GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()),
                             resource.data()) ||
        !VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void**>(&fixed), &size) ||
        size < sizeof(VS_FIXEDFILEINFO)) {
        return std::nullopt;
    }
    return LoadedLibrary{std::to_string(HIWORD(fixed->dwFileVersionMS)) + '.' +
                             std::to_string(LOWORD(fixed->dwFileVersionMS)) + '.' +
                             std::to_string(HIWORD(fixed->dwFileVersionLS)),
                         formats::Narrow(file)};
}

} // namespace convert
