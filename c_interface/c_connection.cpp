#include "boundary.h"
#include "module_state.h"

namespace {

// Why GetOstrel() gave an empty handle.
ostrel_status ConnectionStatus() {
    switch (gLastConnectionFailure) {
    case ConnectionFailure::kWrongApartment:
        return OSTREL_WRONG_THREAD;
    case ConnectionFailure::kRefused:
        return OSTREL_SERVER_REFUSED;
    case ConnectionFailure::kNone:
    case ConnectionFailure::kNoServer:
        break;
    }
    return OSTREL_NO_SERVER;
}

} // namespace

extern "C" ostrel_status ostrel_check_connection(void) {
    return c_interface::WithServer(
        __func__, []() -> ostrel_status { return GetOstrel() ? OSTREL_OK : ConnectionStatus(); });
}

extern "C" ostrel_status ostrel_server_version(uint32_t* major, uint32_t* minor, uint32_t* build) {
    if (major == nullptr || minor == nullptr || build == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return c_interface::WithServer(__func__, [&]() -> ostrel_status {
        const COstrel host = GetOstrel();
        unsigned long versionMajor = 0, versionMinor = 0, versionBuild = 0;
        if (!host || !GetOstrelVersion(versionMajor, versionMinor, versionBuild)) {
            return ConnectionStatus();
        }
        *major = versionMajor;
        *minor = versionMinor;
        *build = versionBuild;
        return OSTREL_OK;
    });
}
