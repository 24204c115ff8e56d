#include "version_setting.h"

#include <windows.h>

namespace camsim {

ServerVersion ReadConfiguredServerVersion() {
    // Longer text than this cannot be three 32-bit numbers.
    wchar_t text[64] = {};
    DWORD bytes = sizeof(text);
    if (RegGetValueW(HKEY_CURRENT_USER, L"Software\\CamSim", L"ServerVersion", RRF_RT_REG_SZ,
                     nullptr, text, &bytes) != ERROR_SUCCESS) {
        return kDefaultServerVersion;
    }
    return ParseServerVersion(text).value_or(kDefaultServerVersion);
}

} // namespace camsim
