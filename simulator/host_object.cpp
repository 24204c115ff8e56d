#include "host_object.h"

#include "version_setting.h"

namespace camsim {

HostObject::HostObject() : version_(ReadConfiguredServerVersion()) {}

HRESULT HostObject::GetServerVersion(ULONG* major, ULONG* minor, ULONG* build) {
    if (major == nullptr || minor == nullptr || build == nullptr) {
        return E_POINTER;
    }
    *major = version_.major;
    *minor = version_.minor;
    *build = version_.build;
    return S_OK;
}

} // namespace camsim
